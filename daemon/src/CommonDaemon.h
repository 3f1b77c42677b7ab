// The daemon's life: Bluetooth up, plugins loaded in priority order; plugins, event
// sources and Bluetooth down again.
#pragma once

#include <list>
#include <memory>

#include "daemon/src/Plugin.h"
#include "daemon/src/PluginOrder.h"

/// One, on main's stack. Main thread only.
class CommonDaemon {
public:
    CommonDaemon();
    /// Deletes the plugins still loaded, without their PLUGIN_DEINIT.
    ~CommonDaemon();
    CommonDaemon(const CommonDaemon&) = delete;
    CommonDaemon& operator=(const CommonDaemon&) = delete;

    /// Throws what creating the plugins throws; a plugin that fails to load is logged.
    void start();
    /// Also destroys the callback delegator, which is not made again.
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
