#include "daemon/src/Plugin.h"

#include <dlfcn.h>

#include <chrono>
#include <stdexcept>

#include "daemon/src/Callback/Epochs.h"
#include "daemon/src/LibraryFile.h"
#include "daemon/src/PluginPath.h"
#include "daemon/src/PluginPriorityChecker.h"
#include "daemon/src/common/log.h"

namespace {

using InitFunction = int (*)(void*);
using DeinitFunction = void (*)();

// dlopen is declared noexcept, but a plugin's static constructor may throw through it. The volatile
// pointer hides the callee from the compiler.
void* (*volatile const openLibrary)(const char*, int) = dlopen;

// The longest wait for a library that is still in use before it is closed.
constexpr std::chrono::seconds PATIENCE{2};

}  // namespace

void Plugin::LibraryCloser::operator()(void* handle) const {
    dlclose(handle);
}

Plugin::~Plugin() {
    release();
}

void Plugin::create(const std::string& name) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    m_name = name;
    m_priority = PluginPriorityChecker::getPriority(m_name);
    m_broker = std::make_unique<RequestBroker>(this);
}

void Plugin::load() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    LOGI("load plugin : %s{p:%d]}", m_name.c_str(), m_priority);
    loadServicePlugin();
}

void Plugin::loadServicePlugin() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    LOGI("start dlopen : %s", m_name.c_str());
    const std::string path = PLUGIN_PATH + "/" + m_name;
    m_handle.reset(LibraryFile::isCutOff(path) ? nullptr : openLibrary(path.c_str(), RTLD_LAZY));
    LOGI("end dlopen : %s", m_name.c_str());
    if (!m_handle) {
        throw std::runtime_error("fail to open plugin");
    }
    const auto init = reinterpret_cast<InitFunction>(dlsym(m_handle.get(), "PLUGIN_INIT"));
    if (init == nullptr) {
        m_handle.reset();
        throw std::runtime_error("fail to find init function");
    }
    LOGI("start init func");
    const int result = init(getRequestBrokerHandle());
    LOGI("end init func");
    if (result < 0) {
        closeLibrary();
        throw std::runtime_error("plugin return negative value : " + std::to_string(result));
    }
}

void* Plugin::getRequestBrokerHandle() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    return static_cast<IRequestBroker*>(m_broker.get());
}

void Plugin::unload() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    unloadServicePlugin();
}

void Plugin::unloadServicePlugin() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    if (!m_handle) {
        return;
    }
    if (const auto deinit =
            reinterpret_cast<DeinitFunction>(dlsym(m_handle.get(), "PLUGIN_DEINIT"))) {
        LOGI("start deinit func");
        deinit();
        LOGI("end deinit func");
    }
    closeLibrary();
    m_broker.reset();
}

void Plugin::destroy() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
}

void Plugin::tearDown() {
    release();
    terminateTaskExecutor();
}

// After the plugin has unsubscribed, other threads may still deliver an event to it, and its
// context may hold tasks. They use the library's code and may use the broker.
void Plugin::waitForUsers() {
    if (m_handle) {
        const auto deadline = std::chrono::steady_clock::now() + PATIENCE;
        deliveryEpochs.waitForEarlier(deadline);
        runLeftTasks(deadline);
    }
}

void Plugin::closeLibrary() {
    waitForUsers();
    m_handle.reset();
}

void Plugin::release() {
    waitForUsers();
    m_broker.reset();
    m_handle.reset();
}
