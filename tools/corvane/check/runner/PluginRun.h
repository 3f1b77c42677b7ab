// A plugin's whole life, as the daemon would lead it, under observation.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <set>
#include <string>

#include "tools/corvane/check/runner/CheckedPlugin.h"
#include "tools/corvane/check/runner/Deliverer.h"
#include "tools/corvane/check/runner/Subscriptions.h"

namespace corvane::check {

/// Owner: main, on the main thread. Everything found goes into the report.
class PluginRun {
public:
    /// `name` is that of the file in the plugin directory.
    PluginRun(const std::string& name, std::chrono::milliseconds slowLimit);

    /// The id of a thread of the plugin's that goes on; 0: none does. Where one does, the
    /// library is left open, and the process is to be ended at once.
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
