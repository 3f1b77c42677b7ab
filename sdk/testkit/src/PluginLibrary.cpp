#include "sdk/testkit/src/PluginLibrary.h"

#include <corvane/testkit/Errors.h>
#include <dlfcn.h>

#include <algorithm>
#include <exception>
#include <list>
#include <system_error>
#include <utility>

#include "daemon/src/Callback/CallbackDelegator.h"
#include "daemon/src/FileManager.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::testkit {

namespace {

// The daemon creates its delegator once; the test kit creates one for each plugin.
void makeRegistry() {
    Singleton<CallbackDelegator>::getInstance();
    Singleton<CallbackDelegator>::instance().reset(new CallbackDelegator);
}

void dropRegistry() {
    Singleton<CallbackDelegator>::instance().reset();
}

bool isCandidate(const std::filesystem::path& file) {
    const auto names = FileManager().getFilesInDirectory(file.parent_path());
    return std::ranges::find(names, file.filename().string()) != names.end();
}

std::string explained(const std::string& daemonsText) {
    if (daemonsText == "fail to open plugin") {
        const char* const loadersText = dlerror();
        return daemonsText + ": " + (loadersText == nullptr ? "no reason is known" : loadersText);
    }
    if (daemonsText == "fail to find init function") {
        return daemonsText + ": the library exports no PLUGIN_INIT; is it extern \"C\"?";
    }
    if (daemonsText.starts_with("plugin return negative value")) {
        return "PLUGIN_INIT failed: " + daemonsText;
    }
    return "PLUGIN_INIT threw: " + daemonsText;
}

std::string subscriptionsLeft() {
    std::string text;
    for (const auto& event : subscribedEvents()) {
        text += (text.empty() ? "; it leaves subscriptions behind: " : ", ") + event;
    }
    return text;
}

}  // namespace

std::vector<std::string> subscribedEvents() {
    std::vector<std::string> events;
    for (const auto& event : host::allEvents()) {
        if (host::callbackIsSet(event)) {
            events.emplace_back(event.name);
        }
    }
    return events;
}

PluginLibrary::PluginLibrary(const std::filesystem::path& file)
    : m_file(std::filesystem::absolute(file).lexically_normal()) {
    std::error_code unknown;
    if (std::filesystem::exists(m_file, unknown) && !isCandidate(m_file)) {
        throw LoadError(m_file.string() +
                        ": the daemon takes only regular files that end in \".so\" for plugins");
    }
    makeRegistry();
    try {
        open();
    } catch (...) {
        dropRegistry();
        throw;
    }
    m_isLoaded = true;
}

PluginLibrary::~PluginLibrary() {
    if (m_isLoaded) {
        try {
            unload();
        } catch (const std::exception&) {
            // A test that wants to see the exception calls unload().
        }
    }
}

void PluginLibrary::open() {
    // In the test kit the plugin directory is the root directory.
    m_plugin->create(m_file.relative_path());
    std::string failure;
    dlerror();
    try {
        m_plugin->load();
    } catch (const std::exception& error) {
        failure = explained(error.what());
    } catch (...) {
        failure = "PLUGIN_INIT threw something that is no std::exception; that ends the daemon";
    }
    // After the handler, because the exception's class may be defined in the library that this
    // closes.
    if (!failure.empty()) {
        failure += subscriptionsLeft();
        m_plugin->tearDown();
        throw LoadError(m_file.string() + ": " + failure);
    }
}

Leftovers PluginLibrary::unload() {
    m_isLoaded = false;
    std::string failure;
    try {
        m_plugin->unload();
        m_plugin->destroy();
    } catch (const std::exception& error) {
        failure = error.what();
    } catch (...) {
        failure = "something that is no std::exception";
    }
    Leftovers left{subscribedEvents(), isInTheProcess()};
    if (!failure.empty()) {
        m_plugin->tearDown();
    }
    dropRegistry();
    if (!failure.empty()) {
        throw UnloadError(m_file.string() +
                          ": PLUGIN_DEINIT threw, which ends the daemon: " + failure);
    }
    return left;
}

bool PluginLibrary::isInTheProcess() const {
    void* const handle = dlopen(m_file.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

}  // namespace corvane::testkit
