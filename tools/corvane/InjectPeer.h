// The daemon's end of injection, as the command sees it.
#pragma once

#include "EventTable.h"
#include "Values.h"

#include <string>

namespace corvane::tool {

/// The socket to use: `given` unless it is empty, else CORVANE_INJECT_SOCKET, else
/// corvane/inject.sock in XDG_RUNTIME_DIR, else in /run.
std::string socketPath(const std::string& given);

/// Makes the daemon that listens on `path` deliver the event. Returns the number of callbacks
/// called. Throws std::runtime_error with what went wrong and what to do about it.
unsigned emitEvent(const std::string& path, const corvane::host::Event& event,
                   const corvane::host::Values& values);

}  // namespace corvane::tool
