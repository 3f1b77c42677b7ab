#include "daemon/src/CommonDaemon.h"

#include <bluetooth.h>
#include <bluetooth_tv.h>

#include <exception>
#include <memory>
#include <string>
#include <thread>

#include "daemon/src/Callback/CallbackDelegator.h"
#include "daemon/src/FileManager.h"
#include "daemon/src/PluginPath.h"
#include "daemon/src/common/log.h"
#include "taskExecutor/MainThreadInvoker.h"

namespace {

/// Deletes the plugins that are left in the queue when an exception is thrown.
class QueueCleaner {
public:
    explicit QueueCleaner(PriorityOrder<Plugin>& queue) : m_queue(queue) {}
    ~QueueCleaner() {
        for (; !m_queue.empty(); m_queue.pop()) {
            delete m_queue.top();
        }
    }
    QueueCleaner(const QueueCleaner&) = delete;
    QueueCleaner& operator=(const QueueCleaner&) = delete;

private:
    PriorityOrder<Plugin>& m_queue;
};

}  // namespace

CommonDaemon::CommonDaemon() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
}

CommonDaemon::~CommonDaemon() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
}

void CommonDaemon::start() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    featureInitialize();
    MainThreadInvoker::setMainThreadId(std::this_thread::get_id());
    loadPlugins();
}

void CommonDaemon::terminate() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    unloadPlugins();
    Singleton<CallbackDelegator>::getInstance();
    Singleton<CallbackDelegator>::instance().reset();
    featureDeinitialize();
}

void CommonDaemon::featureInitialize() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    bluetoothInitialize();
}

void CommonDaemon::featureDeinitialize() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    bluetoothDeinitialize();
}

void CommonDaemon::bluetoothInitialize() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    LOGI("init bluetooth");
    bt_product_init();
    bt_audio_initialize();
}

void CommonDaemon::bluetoothDeinitialize() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    LOGI("deinit bluetooth");
    bt_product_deinit();
    bt_audio_deinitialize();
}

void CommonDaemon::loadPlugins() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    PluginQueue candidates = getPluginsInPriority();
    const QueueCleaner cleaner(candidates);
    for (; !candidates.empty(); candidates.pop()) {
        Plugin* plugin = candidates.top();
        bool failed = false;
        try {
            plugin->load();
        } catch (const std::exception& e) {
            LOGE("Exception : %s", e.what());
            failed = true;
        }
        // Outside the handler, because the exception's code may be in the library that this
        // closes. A failed plugin stays in the list, inactive, and is shut down like the others.
        if (failed) {
            try {
                plugin->tearDown();
            } catch (const std::exception& e) {
                LOGE("Exception : %s", e.what());
            }
        }
        m_plugins.emplace_back(plugin);
    }
}

void CommonDaemon::unloadPlugins() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    for (const auto& plugin : m_plugins) {
        plugin->unload();
        plugin->destroy();
    }
    m_plugins.clear();
}

CommonDaemon::PluginQueue CommonDaemon::getPluginsInPriority() {
    PluginQueue plugins;
    for (const std::string& name : FileManager().getFilesInDirectory(PLUGIN_PATH)) {
        auto plugin = std::make_unique<Plugin>();
        plugin->create(name);
        plugins.push(plugin.get());
        static_cast<void>(plugin.release());
    }
    return plugins;
}
