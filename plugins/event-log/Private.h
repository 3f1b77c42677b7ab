// What may be too private for a log: passkeys of pairing, and what sockets receive.
#pragma once

namespace eventlog {

/// Looks whether CORVANE_EVENT_LOG_PRIVATE is "show". Before the first event.
void readPrivacy();

/// Any thread.
bool showsPrivate();

}  // namespace eventlog
