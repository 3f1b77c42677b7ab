// System information of the host: the integers in the file that CORVANE_SYSTEM_INFO
// names, read at each call, and behind it those in the settings.
#include <stdlib.h>
#include <system_info.h>

#include <cerrno>
#include <exception>
#include <optional>

#include "platform/host/libraries/PlatformApi.h"
#include "platform/host/settings/Settings.h"
#include "platform/host/system-info/SystemInfoFile.h"

namespace {

std::optional<int> find(const char* key) {
    if (const char* const path = secure_getenv("CORVANE_SYSTEM_INFO")) {
        if (const auto found = corvane::host::readSystemInfo(path, key)) {
            return found;
        }
    }
    const auto& integers = corvane::host::settings().systemInfo;
    const auto place = integers.find(key);
    return place == integers.end() ? std::nullopt : std::optional(place->second);
}

}  // namespace

PLATFORM_API int system_info_get_custom_int(const char* key, int* value) {
    if (key == nullptr || value == nullptr) {
        return -EINVAL;
    }
    try {
        const auto found = find(key);
        if (!found) {
            return -ENOENT;
        }
        *value = *found;
        return 0;
    } catch (const std::exception&) {
        return -ENOMEM;
    }
}
