// Starts and stops the daemon: initialises Bluetooth and loads plugins in priority order; unloads
// the plugins, deletes the event sources and deinitialises Bluetooth.
#pragma once

#include <list>
#include <memory>

#include "daemon/src/Plugin.h"
#include "daemon/src/PluginOrder.h"

/// One instance, on main's stack. Used on the main thread only.
class CommonDaemon {
public:
    CommonDaemon();
    /// Deletes the plugins still loaded, without their PLUGIN_DEINIT.
    ~CommonDaemon();
    CommonDaemon(const CommonDaemon&) = delete;
    CommonDaemon& operator=(const CommonDaemon&) = delete;

    /// Logs a plugin that fails to load. Throws what creating the plugins throws.
    void start();
    /// Also destroys the callback delegator, which is not created again.
    void terminate();

private:
    using PluginQueue = PriorityOrder<Plugin>;

    void featureInitialize();
    void featureDeinitialize();
    void bluetoothInitialize();
    void bluetoothDeinitialize();

    void loadPlugins();
    void unloadPlugins();
    PluginQueue getPluginsInPriority();

    std::list<std::unique_ptr<Plugin>> m_plugins;  // in load order
};
