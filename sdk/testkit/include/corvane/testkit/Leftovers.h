// What a plugin left behind when it was unloaded.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace corvane::testkit {

struct Leftovers {
    /// Names of the events that are still subscribed, as in `corvane list`. An initialised profile
    /// counts as a subscription. In the daemon, such an event would call unmapped code.
    std::vector<std::string> subscriptions;

    /// True if the library is still mapped after it was closed. The usual reason is that it exports
    /// more than its two entry points. Its variables keep their values for the next load.
    bool libraryStays = false;

    bool none() const { return subscriptions.empty() && !libraryStays; }
};

/// Writes one sentence for each kind of leftover.
std::ostream& operator<<(std::ostream& out, const Leftovers& leftovers);

}  // namespace corvane::testkit
