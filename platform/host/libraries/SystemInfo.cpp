// The C function of the platform's system information.
#include <system_info.h>

#include <cerrno>
#include <exception>

#include "platform/host/PlatformApi.h"
#include "platform/host/system-info/SystemInfoFile.h"

PLATFORM_API int system_info_get_custom_int(const char* key, int* value) {
    if (key == nullptr || value == nullptr) {
        return -EINVAL;
    }
    try {
        const auto found = corvane::host::findSystemInfo(key);
        if (!found) {
            return -ENOENT;
        }
        *value = *found;
        return 0;
    } catch (const std::exception&) {
        return -ENOMEM;
    }
}
