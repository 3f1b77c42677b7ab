#include <corvane/testkit/Host.h>

#include <atomic>
#include <thread>

#include "platform/host/events/EventTable.h"
#include "sdk/testkit/src/Emissions.h"
#include "sdk/testkit/src/MainLoop.h"
#include "sdk/testkit/src/PluginLibrary.h"
#include "sdk/testkit/src/Recorder.h"
#include "taskExecutor/MainThreadInvoker.h"

namespace corvane::testkit {

namespace {

/// The platform's functions exist once in a process, so there is only one Host at a time.
class OnlyOne {
public:
    OnlyOne() {
        if (s_exists.exchange(true)) {
            throw std::logic_error("there is another Host in this process; end that one first");
        }
    }
    ~OnlyOne() { s_exists = false; }
    OnlyOne(const OnlyOne&) = delete;
    OnlyOne& operator=(const OnlyOne&) = delete;

private:
    static inline std::atomic<bool> s_exists = false;
};

}  // namespace

class Host::Impl {
public:
    ~Impl() { emissions.abandon(); }

    PluginLibrary& plugin() {
        if (library == nullptr) {
            throw std::logic_error("no plugin is loaded; call load() first");
        }
        return *library;
    }

    OnlyOne onlyOne;
    MainLoop mainLoop;
    std::unique_ptr<PluginLibrary> library;
    Emissions emissions;
};

Host::Host() : m_impl(std::make_unique<Impl>()) {
    Recorder::instance().clear();
    MainThreadInvoker::setMainThreadId(std::this_thread::get_id());
}

Host::~Host() = default;

void Host::load(const std::filesystem::path& library) {
    if (m_impl->library != nullptr) {
        throw std::logic_error("a plugin is loaded already; call unload() first");
    }
    m_impl->library = std::make_unique<PluginLibrary>(library);
}

Leftovers Host::unload() {
    waitUntilHandled();
    const auto library = std::move(m_impl->library);
    return library->unload();
}

bool Host::emit(const std::string& event, const Arguments& arguments) {
    m_impl->plugin();
    return Emissions::emit(event, arguments);
}

void Host::emitFromThreads(int count, const std::string& event, const Arguments& arguments) {
    m_impl->plugin();
    m_impl->emissions.emitFromThreads(count, event, arguments);
}

void Host::waitUntilHandled(std::chrono::milliseconds limit) {
    m_impl->emissions.waitUntilHandled(m_impl->plugin().taskInvoker(), limit);
}

bool Host::runMainLoopUntil(const std::function<bool()>& condition,
                            std::chrono::milliseconds limit) {
    return m_impl->mainLoop.runUntil(condition, limit);
}

std::vector<std::string> Host::subscriptions() const {
    return subscribedEvents();
}

std::vector<LogLine> Host::log() const {
    return Recorder::instance().log();
}

void Host::clearLog() {
    Recorder::instance().clearLog();
}

std::optional<LogLine> Host::waitForLog(const std::string& part,
                                        std::chrono::milliseconds limit) const {
    return Recorder::instance().wait(part, limit);
}

void Host::setSystemInformation(const std::string& key, int value) {
    Recorder::instance().setSystemInformation(key, value);
}

std::vector<std::string> Host::allEvents() {
    std::vector<std::string> names;
    for (const auto& event : host::allEvents()) {
        names.emplace_back(event.name);
    }
    return names;
}

}  // namespace corvane::testkit
