// What a plugin left behind when it was unloaded.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace corvane::testkit {

struct Leftovers {
    /// The events still subscribed (also initialised profiles), as `corvane list` names them.
    /// After PLUGIN_DEINIT they would call into a library that is gone.
    std::vector<std::string> subscriptions;

    /// The library is still in the process after it was closed, mostly because it exports
    /// more than its two entry points. Its variables keep their values for the next load.
    bool libraryStays = false;

    bool none() const { return subscriptions.empty() && !libraryStays; }
};

/// A sentence for each kind of leftover.
std::ostream& operator<<(std::ostream& out, const Leftovers& leftovers);

}  // namespace corvane::testkit
