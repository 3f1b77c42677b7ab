#include "sdk/testkit/src/Emissions.h"

#include <algorithm>
#include <latch>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/host/events/EventArguments.h"
#include "platform/host/events/ValueText.h"
#include "platform/host/inject/Delivery.h"

namespace corvane::testkit {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

struct Emission {
    const host::Event* event;
    host::Values values;

    bool deliver() const { return host::deliver(*event, values) > 0; }
};

Emission makeEmission(const std::string& name, const Arguments& arguments) {
    std::vector<std::string> words;
    for (const auto& [key, value] : arguments) {
        words.push_back(key + "=" + value);
    }
    try {
        const auto& event = host::eventNamed(name);
        return {&event, host::parseArguments(event, words)};
    } catch (const std::runtime_error& error) {
        throw InvalidEvent(error.what());
    }
}

bool deliver(const Emission& emission) {
    try {
        return emission.deliver();
    } catch (const host::InvalidValue& error) {
        throw InvalidEvent(error.what());
    }
}

// A task that the plugin's context runs after all others. A job that is queued at the moment in
// which the running thread leaves the context waits for the next job. So another one is queued from
// time to time until one has run, but only a few, because the queue is short.
bool runMarker(ITaskInvoker& invoker, steady_clock::time_point deadline) {
    struct Marker {
        std::mutex mutex;
        std::condition_variable changed;
        bool reached = false;
    };
    const auto marker = std::make_shared<Marker>();
    for (milliseconds patience{50};; patience *= 2) {
        invoker.invokeTask([marker] {
            const std::lock_guard lock(marker->mutex);
            marker->reached = true;
            marker->changed.notify_all();
        });
        std::unique_lock lock(marker->mutex);
        const auto next = std::min(deadline, steady_clock::now() + patience);
        if (marker->changed.wait_until(lock, next, [&] { return marker->reached; })) {
            return true;
        }
        if (steady_clock::now() >= deadline) {
            return false;
        }
    }
}

std::string within(milliseconds limit) {
    return "within " + std::to_string(limit.count()) + " ms";
}

}  // namespace

bool Emissions::emit(const std::string& event, const Arguments& arguments) {
    return deliver(makeEmission(event, arguments));
}

void Emissions::emitFromThreads(int count, const std::string& event, const Arguments& arguments) {
    if (count < 1) {
        throw std::invalid_argument("emitFromThreads: the number of threads is " +
                                    std::to_string(count));
    }
    const auto emission = std::make_shared<const Emission>(makeEmission(event, arguments));
    const auto start = std::make_shared<std::latch>(count);
    auto& threads = m_threads.emplace_back(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const std::unique_lock lock(m_mutex);
        const auto underWay = m_underWay.insert(event);
        threads.post([this, emission, start, underWay] {
            start->arrive_and_wait();
            std::exception_ptr thrown;
            try {
                deliver(*emission);
            } catch (...) {
                thrown = std::current_exception();
            }
            const std::lock_guard ending(m_mutex);
            m_thrown = m_thrown == nullptr ? thrown : m_thrown;
            thrown = nullptr;
            m_underWay.erase(underWay);
            m_ended.notify_all();
        });
    }
}

void Emissions::awaitDeliveries(TimePoint deadline, milliseconds limit) {
    std::unique_lock lock(m_mutex);
    if (!m_ended.wait_until(lock, deadline, [this] { return m_underWay.empty(); })) {
        throw TimedOut("the plugin hasn't taken " + std::to_string(m_underWay.size()) +
                       " event(s), of them " + *m_underWay.begin() + ", " + within(limit));
    }
    if (m_thrown != nullptr) {
        std::rethrow_exception(std::exchange(m_thrown, nullptr));
    }
}

void Emissions::waitUntilHandled(ITaskInvoker& invoker, milliseconds limit) {
    const auto deadline = steady_clock::now() + limit;
    awaitDeliveries(deadline, limit);
    m_threads.clear();
    if (!runMarker(invoker, deadline)) {
        throw TimedOut("a thread is still inside the plugin's work; it hasn't finished " +
                       within(limit));
    }
}

void Emissions::abandon() {
    {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [this] { return m_underWay.empty(); });
        m_thrown = nullptr;
    }
    m_threads.clear();
}

}  // namespace corvane::testkit
