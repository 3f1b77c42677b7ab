// The arguments of an event as a D-Bus message.
#pragma once

#include "EventTable.h"
#include "Values.h"

#include <systemd/sd-bus.h>

#include <span>

namespace corvane::tool {

/// Throws std::runtime_error, which names the argument that can't be sent.
void appendArguments(sd_bus_message* message, std::span<const corvane::host::Field> fields,
                     const corvane::host::Values& values);

}  // namespace corvane::tool
