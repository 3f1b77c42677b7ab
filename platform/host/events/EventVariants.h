// The values with which the platform may deliver an event. A plugin must handle all of them.
#pragma once

#include <string>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::host {

struct EventVariant {
    Values values;
    /// From the defaults, in the form of `corvane emit`, which can't send a text that is not UTF-8
    /// or an unknown value of an enumeration. Empty for the defaults.
    std::string difference;
};

/// Returns the defaults, then variants that differ in one argument or record field: the other
/// boolean, each value of an enumeration and, if its type can hold one, an unknown one, the ends of
/// a number's range, an empty text, array or record, another address, a long text and one that is
/// not UTF-8, and counts that don't match their array. The platform refuses a count beyond an array
/// that is read.
std::vector<EventVariant> variantsOf(const Event& event);

}  // namespace corvane::host
