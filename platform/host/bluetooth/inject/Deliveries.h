// How an injected event reaches its callback: the same way as one from BlueZ.
#pragma once

#include "Values.h"

#include <span>

namespace corvane::host {

/// One event of the table and the function that calls its callback with the values given.
/// The function returns the number of callbacks called and throws what they throw.
struct Delivery {
    const char* event;
    unsigned (*deliver)(const Values& values);
};

std::span<const Delivery> bluetoothDeliveries();

}  // namespace corvane::host
