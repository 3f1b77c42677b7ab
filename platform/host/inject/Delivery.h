// Delivers an injected event to its callback.
#pragma once

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::host {

/// Calls the callback of an event of the table with `values`, the same way as an event from
/// BlueZ. Returns the number of callbacks called. Any thread. Throws what the callback throws, or
/// InvalidValue, before anything is called, if the values contradict each other.
unsigned deliver(const Event& event, const Values& values);

}  // namespace corvane::host
