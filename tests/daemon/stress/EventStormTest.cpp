// Four threads deliver events of every kind while two others subscribe and unsubscribe.
// CORVANE_STORM_EVENTS sets the number of events.
#include <bluetooth.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/ITaskInvoker.h"
#include "taskExecutor/TaskExecutor.h"
#include "tests/daemon/stress/StampedEvents.h"
#include "tests/support/Events.h"
#include "tests/support/FakePlatform.h"

namespace {

constexpr unsigned DELIVERING_THREADS = 4;
constexpr unsigned SUBSCRIBING_THREADS = 2;

unsigned eventsPerThread() {
    const char* const events = std::getenv("CORVANE_STORM_EVENTS");
    return static_cast<unsigned>(events == nullptr ? 50'000 : std::strtoul(events, nullptr, 10)) /
           DELIVERING_THREADS;
}

/// Returns the kind of a thread's event. The kinds follow in turn.
std::size_t kindOf(Stamp stamp) {
    return (stamp.thread + stamp.number) % stampedEvents().size();
}

/// A plugin's task invoker. It blocks producers, without a time limit, while too many tasks are
/// queued. A job that is queued while the runner leaves waits for the next job, so blocked
/// producers queue empty tasks.
class StormInvoker : public ITaskInvoker {
public:
    StormInvoker() { m_executor->Initiate(0, 0); }
    ~StormInvoker() override { m_executor->TerminateSync(1000); }

    void invokeTask(const ITaskInvoker::Task& task) override {
        while (m_handedIn - m_done > MOST_WAITING) {
            runTheRest();
            std::this_thread::yield();
        }
        ++m_handedIn;
        m_executor->Schedule(task);
    }
    void runTheRest() {
        m_executor->Schedule([] {});
    }
    /// Called by each task.
    void done() { ++m_done; }
    long handedIn() const { return m_handedIn; }

private:
    static constexpr long MOST_WAITING = 10'000;

    std::shared_ptr<TaskExecutor> m_executor = TaskExecutor::Create();
    std::atomic<long> m_handedIn = 0;
    std::atomic<long> m_done = 0;
};

/// A plugin with its broker, without subscriptions at first. Its counters are intentionally not
/// atomic: if the context ran two tasks at once, ThreadSanitizer would report a data race.
class Plugin : public StampReceiver {
public:
    /// A plugin that `stays` is always subscribed and expects every event.
    explicit Plugin(bool stays = false) : m_stays(stays) {}
    // Jobs that are still queued would be leaked with the context.
    ~Plugin() override { invoker.runTheRest(); }
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    void subscribeAll() {
        for (const auto& event : stampedEvents()) {
            event->subscribe(broker, *this);
        }
    }
    void unsubscribeAll() {
        for (const auto& event : stampedEvents()) {
            event->unsubscribe(broker);
        }
    }

    void receive(const Received& received, const Arguments& arguments) override {
        wrong += m_inside.exchange(true);
        ++count;
        ++m_counts[received.kind];
        if (received.thread && (m_stays || received.number)) {
            wrong += !isNext(received, arguments);
        }
        m_inside = false;
        invoker.done();
    }

    long count = 0;
    long wrong = 0;
    std::array<long, 42> counts() const { return m_counts; }

    StormInvoker invoker;
    RequestBroker broker{&invoker};

private:
    bool isNext(const Received& received, const Arguments& arguments) {
        Stamp next{*received.thread, received.number.value_or(0)};
        if (next.thread >= DELIVERING_THREADS) {
            return false;
        }
        unsigned& following = m_following[next.thread];
        bool holds = !received.number || *received.number >= following;
        if (m_stays) {
            next.number = following;
            // Skip events that don't contain the sending thread. They are only counted.
            while (!stampedEvents()[kindOf(next)]->tellsThread()) {
                ++next.number;
            }
            holds = !received.number || *received.number == next.number;
        }
        following = next.number + 1;
        return holds && kindOf(next) == received.kind && arguments.areOf(next);
    }

    bool m_stays;
    std::atomic<bool> m_inside = false;
    std::array<unsigned, DELIVERING_THREADS> m_following{};
    std::array<long, 42> m_counts{};
};

/// Calls `deliver(stamp)` for each event on the delivering threads. Meanwhile calls
/// `change(plugin)` repeatedly on the other threads, each with its own plugin. These plugins must
/// outlive the storm: a delivery may still use a plugin that has unsubscribed.
template <typename Deliver, typename Change>
void storm(std::array<Plugin, SUBSCRIBING_THREADS>& passing, unsigned events, Deliver deliver,
           Change change) {
    std::atomic<unsigned> delivering = DELIVERING_THREADS;
    std::vector<std::jthread> threads;
    for (unsigned thread = 0; thread < DELIVERING_THREADS; ++thread) {
        threads.emplace_back([&, thread] {
            for (unsigned number = 0; number < events; ++number) {
                deliver(Stamp{thread, number});
            }
            --delivering;
        });
    }
    for (Plugin& plugin : passing) {
        threads.emplace_back([&] {
            while (delivering > 0) {
                change(plugin);
            }
        });
    }
}

class EventStormTest : public testing::Test {
protected:
    EventStormTest() {
        fake_platform::reset();
        fake_platform::recordNothing();
    }
    ~EventStormTest() override { fake_platform::reset(); }
};

}  // namespace

TEST_F(EventStormTest, APluginThatStaysGetsEveryEventOfEveryKindWholeAndInOrder) {
    const unsigned events = eventsPerThread();
    std::array<long, 42> expected{};
    for (unsigned thread = 0; thread < DELIVERING_THREADS; ++thread) {
        for (unsigned number = 0; number < events; ++number) {
            ++expected[kindOf({thread, number})];
        }
    }
    Plugin staying(true);
    staying.subscribeAll();
    long rounds = 0;
    std::array<Plugin, SUBSCRIBING_THREADS> passing;
    for (Plugin& plugin : passing) {
        plugin.subscribeAll();
    }
    storm(
        passing, events, [](Stamp stamp) { stampedEvents()[kindOf(stamp)]->deliver(stamp); },
        [&](Plugin& plugin) {
            plugin.unsubscribeAll();
            plugin.subscribeAll();
            if (&plugin == &passing.front()) {
                ++rounds;
            }
        });
    staying.invoker.runTheRest();
    EXPECT_EQ(staying.count, long{DELIVERING_THREADS} * events);
    EXPECT_EQ(staying.counts(), expected);
    EXPECT_EQ(staying.wrong, 0);
    std::cout << staying.count << " events of " << stampedEvents().size()
              << " kinds received by the plugin that stays, " << staying.wrong
              << " wrong, out of order or at once\n";
    for (Plugin& plugin : passing) {
        plugin.unsubscribeAll();
        plugin.invoker.runTheRest();
        EXPECT_EQ(plugin.count, plugin.invoker.handedIn());
        EXPECT_GT(plugin.count, 0);
        EXPECT_EQ(plugin.wrong, 0);
        std::cout << plugin.count << " received by one that comes and goes, " << plugin.wrong
                  << " wrong, out of order or at once\n";
    }
    std::cout << rounds << " rounds of unsubscribing from all and subscribing by one thread\n";
    staying.unsubscribeAll();
    EXPECT_EQ(fake_platform::callbacksSet(), 0);
}

TEST_F(EventStormTest, SourcesMayComeAndGoBetweenTheEvents) {
    fake_platform::serialiseDeliveries();
    const StampedEvent& event = *stampedEvents()[3];
    std::array<Plugin, SUBSCRIBING_THREADS> passing;
    storm(
        passing, 50'000, [&](Stamp stamp) { event.deliver(stamp); },
        [&](Plugin& plugin) {
            event.subscribe(plugin.broker, plugin);
            event.unsubscribe(plugin.broker);
        });
    EXPECT_EQ(fake_platform::callbacksSet(), 0);
    const auto slot = fake_platform::slot(allEvents()[3]->setFunction);
    EXPECT_GT(slot.sets, 0);
    EXPECT_EQ(slot.sets, slot.unsets);
}
