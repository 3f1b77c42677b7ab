// How an injected event reaches its callback: the same way as one from BlueZ.
#pragma once

#include <span>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::host {

/// One event of the table and the function that calls its callback with the values given.
/// The function returns the number of callbacks called and throws what they throw, or
/// InvalidValue, and nothing has been called, if the values don't go together.
struct Delivery {
    const char* event;
    unsigned (*deliver)(const Event& event, const Values& values);
};

/// One for each slot.
std::span<const Delivery> allDeliveries();

/// That of an event of the table. Throws std::logic_error if there is none.
const Delivery& deliveryOf(const Event& event);

}  // namespace corvane::host
