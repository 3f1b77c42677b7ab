// One plugin library: opens, starts, stops and closes it. A plugin is also the task invoker for its
// own events and tasks.
#pragma once

#include <memory>
#include <string>

#include "daemon/src/PluginOrder.h"
#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/TaskInvokerImpl.h"

/// Owned by the daemon's list of plugins.
/// Threads: main thread, except invokeTask and runLeftTasks.
class Plugin : public TaskInvokerImpl {
public:
    using Compare = ComparePriority<Plugin>;

    Plugin() = default;
    ~Plugin() override;

    /// Sets the library's file name (without directory) and the priority, and creates the broker.
    void create(const std::string& name);

    /// Opens the library and calls its PLUGIN_INIT with the broker. Throws std::runtime_error if
    /// that fails, and what PLUGIN_INIT throws.
    void load();

    /// Calls PLUGIN_DEINIT, closes the library and deletes the broker. Does nothing if the library
    /// isn't open.
    void unload();

    /// Called last for each plugin at shut-down. Only logs.
    void destroy();

    /// Does what deletion does, but keeps the object: the library is closed and tasks are ignored.
    void tearDown();

    int getPriority() const { return m_priority; }

protected:
    struct LibraryCloser {
        void operator()(void* handle) const;
    };

    std::unique_ptr<void, LibraryCloser> m_handle;
    std::unique_ptr<RequestBroker> m_broker;

private:
    void loadServicePlugin();
    void unloadServicePlugin();
    void* getRequestBrokerHandle();
    void waitForUsers();
    void closeLibrary();
    void release();

    std::string m_name;
    int m_priority = 0;
};
