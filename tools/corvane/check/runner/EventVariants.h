// The legal variants of an event. A plugin must handle all of them.
#pragma once

#include <string>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::check {

struct EventVariant {
    corvane::host::Values values;
    std::string difference;  // from the defaults, in the form of `corvane emit`; or empty
};

/// Returns the defaults, then variants that differ in one value: an empty text or array, no record,
/// the other boolean, each value of an enumeration. The platform may refuse a combination.
std::vector<EventVariant> variantsOf(const corvane::host::Event& event);

}  // namespace corvane::check
