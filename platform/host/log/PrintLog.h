// The platform log, behind its C functions.
#pragma once

#include <cstdarg>

#include "platform/host/PlatformApi.h"

namespace corvane::host {

/// Writes a line for the C functions of dlog.h, and returns what they return. Any thread.
PLATFORM_SHARED int printLog(int priority, const char* tag, const char* format,
                             va_list arguments) noexcept;

}  // namespace corvane::host
