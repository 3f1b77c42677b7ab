// Decides whether private data is logged: pairing passkeys and data received by sockets.
#pragma once

namespace eventlog {

/// Reads the environment variable CORVANE_EVENT_LOG_PRIVATE. Call it before the first event.
void readPrivacy();

/// Any thread.
bool showsPrivate();

}  // namespace eventlog
