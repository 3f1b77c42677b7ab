// What feeds the callbacks of all the platform libraries: BlueZ, and injection when
// the settings, or the environment variable CORVANE_INJECT_SOCKET, name its socket.
#pragma once

#include "platform/host/libraries/PlatformApi.h"

namespace corvane::host {

/// Main thread only. Starting what runs and stopping what doesn't change nothing. Both
/// return 0 or a negative error; that BlueZ or the socket isn't to be had is no error.
PLATFORM_SHARED int startProduct();
PLATFORM_SHARED int stopProduct();

}  // namespace corvane::host
