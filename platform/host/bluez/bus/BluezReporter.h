// The interface through which changes of BlueZ's objects reach the code that turns them
// into events. There is one reporter for each subject: see reporters/Reporters.h.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "platform/host/bluez/bus/Properties.h"

namespace corvane::host {

class BluezObjects;

/// One interface of one object was added, changed or removed.
struct Change {
    const BluezObjects& objects;  // after the change
    const std::string& path;
    const std::string& interface;
    const Properties* before;  // null: the interface was added
    const Properties* now;     // null: the interface was removed
    bool isFound;              // added together with its device: its state may be an old one
};

/// Returns the property's value if the change gave it a new one, else null.
template <typename T>
const T* changedTo(const Change& change, std::string_view name) {
    const auto* const now = change.now == nullptr ? nullptr : findProperty<T>(*change.now, name);
    const auto* const before =
        change.before == nullptr ? nullptr : findProperty<T>(*change.before, name);
    return now != nullptr && before != nullptr && *now == *before ? nullptr : now;
}

/// The paths of the objects that are in a state, as last reported or found.
using PathSet = std::set<std::string>;

/// Adds or removes a path. Returns true if that changed the set.
inline bool setMember(PathSet& paths, const std::string& path, bool isMember) {
    return isMember ? paths.insert(path).second : paths.erase(path) > 0;
}

/// Owner: BluezObjects. Threads: main thread. Errors: what a callback throws; the reporter
/// has updated its own state before.
class BluezReporter {
public:
    BluezReporter() = default;
    virtual ~BluezReporter() = default;
    BluezReporter(const BluezReporter&) = delete;
    BluezReporter& operator=(const BluezReporter&) = delete;

    virtual void onChange(const Change& change) = 0;

    /// The objects were read for the first time. The reporter notes their state; only the
    /// adapter's power state is an event.
    virtual void onSnapshot(const BluezObjects&) {}
};

}  // namespace corvane::host
