// Reads the settings from the file and then from the environment, which overrides it.
#include "platform/host/settings/Settings.h"

#include <stdlib.h>

#include <string>

#include "platform/host/settings/SettingsFile.h"
#include "platform/host/settings/SettingsKeys.h"

namespace corvane::host {

namespace {

const char* variable(const char* name) {
    const char* const value = secure_getenv(name);
    return value == nullptr || *value == '\0' ? nullptr : value;
}

void override(Settings& settings, const char* name, const char* section, const char* key) {
    if (const char* const value = variable(name)) {
        if (const auto error = storeSetting(settings, section, key, value)) {
            settings.complaints.push_back(std::string(name) + ": " + *error);
        }
    }
}

}  // namespace

Settings readSettings() {
    Settings result;
    if (const char* const path = variable("CORVANE_PLATFORM_CONF")) {
        readSettingsFile(result, path, AbsentFile::reported);
    } else {
        readSettingsFile(result, CORVANE_SETTINGS_FILE, AbsentFile::allowed);
    }
    override(result, "CORVANE_LOG_LEVEL", "log", "level");
    override(result, "CORVANE_INJECT_SOCKET", "inject", "socket");
    return result;
}

const Settings& settings() {
    // Never destroyed, because destructors at process exit log as well.
    static const Settings& read = *new Settings(readSettings());
    return read;
}

}  // namespace corvane::host
