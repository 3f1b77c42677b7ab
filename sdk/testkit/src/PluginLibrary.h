// The plugin under test: the daemon's own object for it, and what it leaves behind.
#pragma once

#include <corvane/testkit/Leftovers.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "daemon/src/Plugin.h"

namespace corvane::testkit {

/// The events whose callbacks are set.
std::vector<std::string> subscribedEvents();

/// One plugin, loaded for as long as the object lives or until unload(). Also owns the
/// daemon's registry of subscriptions, made anew for each.
///
/// Owner: the host, on whose thread all happens, except that events and requested work are
/// handled on any. Errors: see Host.
class PluginLibrary {
public:
    /// Throws LoadError.
    explicit PluginLibrary(const std::filesystem::path& file);
    /// Unloads if that hasn't been done, and forgets what that throws.
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    /// Once. Throws UnloadError; the library is closed all the same.
    Leftovers unload();

    ITaskInvoker& taskInvoker() { return *m_plugin; }

private:
    void open();
    bool isInTheProcess() const;

    std::filesystem::path m_file;
    // Outlives the registry's entries, which name it.
    std::unique_ptr<Plugin> m_plugin = std::make_unique<Plugin>();
    bool m_isLoaded = false;
};

}  // namespace corvane::testkit
