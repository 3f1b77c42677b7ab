// Turns changes of the sound server's default sink into speaker-changed events.
#pragma once

#include "platform/host/PlatformApi.h"

namespace corvane::host {

/// Follows the sound server while the speaker-changed callback is set. Call it after each change
/// of the callback, on any thread. The server is connected from the main loop, so setting the
/// callback does not block; without a main loop no server is followed. The callback is called on
/// the main thread only, and never from here.
PLATFORM_SHARED void followSpeakerCallback() noexcept;

}  // namespace corvane::host
