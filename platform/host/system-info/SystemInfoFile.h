// System information: named integers, from a file and from the settings.
#pragma once

#include <optional>

#include "platform/host/PlatformApi.h"

namespace corvane::host {

/// Returns the integer named `key`: the last one of that name in the file that CORVANE_SYSTEM_INFO
/// names, which is read at each call, or else the one in the settings. Logs the lines of the file
/// that it can't use. Any thread. Errors: std::bad_alloc.
PLATFORM_SHARED std::optional<int> findSystemInfo(const char* key);

}  // namespace corvane::host
