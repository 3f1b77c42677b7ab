// System information of the host: CORVANE_SYSTEM_INFO names the file with the
// integers, else it is /etc/corvane/system-info.conf. It is read at each call.
#include "PlatformApi.h"
#include "SystemInfoFile.h"

#include <system_info.h>

#include <cerrno>
#include <cstdlib>
#include <exception>

PLATFORM_API int system_info_get_custom_int(const char* key, int* value) {
    if (key == nullptr || value == nullptr) {
        return -EINVAL;
    }
    const char* const path = std::getenv("CORVANE_SYSTEM_INFO");
    try {
        const auto found = corvane::host::readSystemInfo(
            path == nullptr ? "/etc/corvane/system-info.conf" : path, key);
        if (!found) {
            return -ENOENT;
        }
        *value = *found;
        return 0;
    } catch (const std::exception&) {
        return -ENOMEM;
    }
}
