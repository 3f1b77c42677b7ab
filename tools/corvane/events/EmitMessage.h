// Appends the arguments of an event to a D-Bus message.
#pragma once

#include <systemd/sd-bus.h>

#include <span>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::tool {

/// Throws std::runtime_error that names the argument that can't be sent.
void appendArguments(sd_bus_message* message, std::span<const corvane::host::Field> fields,
                     const corvane::host::Values& values);

}  // namespace corvane::tool
