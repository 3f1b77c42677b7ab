// The plugin under test, loaded and unloaded by the daemon's own class Plugin.
#pragma once

#include <corvane/testkit/Leftovers.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "daemon/src/Plugin.h"

namespace corvane::testkit {

/// Returns the names of the events whose platform callbacks are set.
std::vector<std::string> subscribedEvents();

/// Keeps one plugin loaded until unload() or the destructor. Also owns the daemon's callback
/// delegator, which is created anew for each plugin.
///
/// Owner: Host, whose thread calls every function. Events and requested work may run on any
/// thread. Errors: see Host.
class PluginLibrary {
public:
    /// Throws LoadError.
    explicit PluginLibrary(const std::filesystem::path& file);
    /// Unloads the plugin if it is still loaded, and discards exceptions.
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    /// Call it at most once. Throws UnloadError; the library is closed nevertheless.
    Leftovers unload();

    ITaskInvoker& taskInvoker() { return *m_plugin; }

private:
    void open();
    bool isInTheProcess() const;

    std::filesystem::path m_file;
    // The delegator's entries point to it, so it is destroyed after them.
    std::unique_ptr<Plugin> m_plugin = std::make_unique<Plugin>();
    bool m_isLoaded = false;
};

}  // namespace corvane::testkit
