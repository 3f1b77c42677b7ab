// Runs a plugin from loading to unloading, as the daemon does, and reports findings.
#include "tools/corvane/check/runner/PluginRun.h"

#include <Ecore.h>
#include <dlfcn.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "daemon/src/PluginPath.h"
#include "tools/corvane/check/runner/Report.h"

namespace corvane::check {

namespace fs = std::filesystem;

namespace {

std::set<std::string> runningThreads() {
    std::set<std::string> ids;
    for (const auto& entry : fs::directory_iterator("/proc/self/task")) {
        ids.insert(entry.path().filename());
    }
    return ids;
}

std::string nameOfThread(const std::string& id) {
    std::string name;
    std::getline(std::ifstream("/proc/self/task/" + id + "/comm"), name);
    return name;
}

void iterateMainLoop() {
    for (int i = 0; i < 5; ++i) {
        ecore_main_loop_iterate();
    }
}

}  // namespace

PluginRun::PluginRun(const std::string& name, std::chrono::milliseconds slowLimit)
    : m_name(name),
      m_threadsBefore(runningThreads()),
      m_plugin(slowLimit),
      m_deliverer(m_plugin, m_subscriptions) {}

pid_t PluginRun::run() {
    m_plugin.create(m_name, m_subscriptions);
    // This second handle keeps the library loaded while the run looks for leftovers.
    report::step("the opening of the library");
    void* const handle = dlopen((PLUGIN_PATH + "/" + m_name).c_str(), RTLD_LAZY);
    if (handle == nullptr) {
        throw std::runtime_error(dlerror());
    }
    const bool isLoaded = load();
    if (isLoaded) {
        playEvents();
    }
    unload(isLoaded);
    RequestBroker broker(&m_plugin);
    m_subscriptions.reportAndUndo(broker);
    const pid_t thread = findLeftThread();
    if (thread == 0) {
        close(handle);
    }
    return thread;
}

bool PluginRun::load() {
    report::step("PLUGIN_INIT");
    try {
        m_plugin.load();
        report::step("");
    } catch (const std::exception& error) {
        // The library is closed if PLUGIN_INIT returned an error, but not if it threw.
        report::finding(m_plugin.isOpen() ? "init-exception" : "init-failed",
                        m_plugin.isOpen() ? report::currentException() : error.what());
        return false;
    } catch (...) {
        report::finding("init-exception", report::currentException());
        return false;
    }
    std::string events;
    for (const auto& event : m_subscriptions.events()) {
        events += (events.empty() ? "" : " ") + event;
    }
    report::fact("events", events);
    return true;
}

void PluginRun::playEvents() {
    const auto play = [](void* self) {
        auto& run = *static_cast<PluginRun*>(self);
        run.m_deliverer.deliverAll();
        run.m_deliverer.deliverOnThreads(
            [](void* data) {
                ecore_main_loop_thread_safe_call_async(
                    [](void* owner) {
                        static_cast<PluginRun*>(owner)->m_played = true;
                        ecore_main_loop_quit();
                    },
                    data);
            },
            self);
    };
    ecore_job_add(play, this);
    while (!m_played) {  // also if the plugin quits the loop
        ecore_main_loop_begin();
    }
    m_deliverer.joinThreads();
    report::step("the tasks that are still queued");
    m_plugin.drain();
    report::step("");
    report::fact("delivered", m_deliverer.delivered());
}

void PluginRun::unload(bool isLoaded) {
    if (!isLoaded) {
        report::step("the end of the task context");
        m_plugin.tearDown();
        report::step("");
        return;
    }
    report::step("PLUGIN_DEINIT");
    try {
        m_plugin.unload();
    } catch (...) {
        report::finding("deinit-exception", report::currentException());
    }
    report::step("");
    report::fact("jobs", m_plugin.jobs());
    report::fact("slowest", m_plugin.slowestMs());
}

pid_t PluginRun::findLeftThread() {
    // The kernel may still list a thread for a moment after it was joined.
    const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(500);
    std::set<std::string> left;
    do {
        left = runningThreads();
        for (const auto& id : m_threadsBefore) {
            left.erase(id);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(left.empty() ? 0 : 10));
    } while (!left.empty() && std::chrono::steady_clock::now() < limit);
    for (const auto& id : left) {
        report::finding("leftover-threads", "thread " + id + " \"" + nameOfThread(id) + '"');
    }
    return left.empty() ? 0 : std::stoi(*left.begin());
}

void PluginRun::close(void* handle) {
    report::step("the unloading of the library");
    dlclose(handle);
    // If PLUGIN_DEINIT threw, the daemon's handle is still open.
    report::step("the end of the task context");
    m_plugin.tearDown();
    report::step("the main loop, after the library was unloaded");
    iterateMainLoop();
    report::step("");
    if (void* const still = dlopen((PLUGIN_PATH + "/" + m_name).c_str(), RTLD_LAZY | RTLD_NOLOAD)) {
        dlclose(still);
        report::finding("stays-loaded", "");
    }
}

}  // namespace corvane::check
