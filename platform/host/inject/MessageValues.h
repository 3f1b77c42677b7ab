// The arguments of an injected event, read from its D-Bus message.
#pragma once

#include <systemd/sd-bus.h>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::host {

/// Reads the arguments of `event` from a message whose types sd-bus has checked.
/// Record fields that aren't given keep their defaults. Throws InvalidValue for a key, type
/// or value that isn't allowed, or a broken message.
Values readValues(sd_bus_message* message, const Event& event);

}  // namespace corvane::host
