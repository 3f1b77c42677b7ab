// The sources of Bluetooth events: BlueZ, and injection if the settings, or the environment
// variable CORVANE_INJECT_SOCKET, name its socket.
#pragma once

#include "platform/host/PlatformApi.h"

namespace corvane::host {

/// Main thread only. A second start, or a stop without a start, has no effect. Both return 0 or
/// a negative error; the absence of BlueZ or of the socket is no error.
PLATFORM_SHARED int startProduct();
PLATFORM_SHARED int stopProduct();

}  // namespace corvane::host
