// Runs a plugin from loading to unloading, as the daemon does, and reports findings.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <set>
#include <string>

#include "tools/corvane/check/runner/CheckedPlugin.h"
#include "tools/corvane/check/runner/Deliverer.h"
#include "tools/corvane/check/runner/Subscriptions.h"

namespace corvane::check {

/// Owner: main, on the main thread. Sends its findings with report::finding.
class PluginRun {
public:
    /// `name` is the file name in the plugin directory.
    PluginRun(const std::string& name, std::chrono::milliseconds slowLimit);

    /// Returns the id of a thread of the plugin that is still running, or 0. If there is one, the
    /// library stays open, and the caller must end the process at once.
    pid_t run();

private:
    bool load();
    void playEvents();
    void unload(bool isLoaded);
    pid_t findLeftThread();
    void close(void* handle);

    const std::string m_name;
    const std::set<std::string> m_threadsBefore;
    Subscriptions m_subscriptions;
    CheckedPlugin m_plugin;
    Deliverer m_deliverer;
    bool m_played = false;
};

}  // namespace corvane::check
