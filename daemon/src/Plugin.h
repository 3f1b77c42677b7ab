// One plugin library: how it is opened, started, stopped and closed. A plugin is the
// task invoker through which its own events and tasks reach it.
#pragma once

#include <memory>
#include <string>

#include "daemon/src/PluginOrder.h"
#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/TaskInvokerImpl.h"

/// Owned by whoever took it from the priority queue, then by the daemon's list.
/// Threads: main thread, but for invokeTask.
class Plugin : public TaskInvokerImpl {
public:
    using Compare = ComparePriority<Plugin>;

    Plugin() = default;
    ~Plugin() override;

    /// Names the library file (without directory), sets the priority and makes the broker.
    void create(const std::string& name);

    /// Opens the library and calls its PLUGIN_INIT with the broker. Throws
    /// std::runtime_error when that fails, and what PLUGIN_INIT throws.
    void load();

    /// Calls PLUGIN_DEINIT, closes the library and drops the broker; nothing if the
    /// library isn't open.
    void unload();

    /// The last step for each plugin at shut-down.
    void destroy();

    /// All that deletion does, but leaves an inert object behind: nothing is open, and
    /// tasks are ignored.
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
    void letOthersLeave();
    void closeLibrary();
    void release();

    std::string m_name;
    int m_priority = 0;
};
