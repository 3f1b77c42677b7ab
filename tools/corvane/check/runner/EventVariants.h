// The legal forms of an event that a plugin must be ready for.
#pragma once

#include <string>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::check {

struct EventVariant {
    corvane::host::Values values;
    std::string difference;  // from the defaults, as `corvane emit` takes it; or empty
};

/// The defaults, then in each one value that is different: empty texts and arrays, no
/// record, each boolean and each value of an enumeration. Some may be refused by the
/// platform, which knows what goes together.
std::vector<EventVariant> variantsOf(const corvane::host::Event& event);

}  // namespace corvane::check
