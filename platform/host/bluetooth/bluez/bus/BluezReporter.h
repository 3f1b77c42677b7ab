// What one concern (the adapter, the bonds, the volume...) is told of BlueZ's
// objects. It compares before with now and calls the callbacks that follow.
#pragma once

#include <string>
#include <string_view>

#include "platform/host/bluetooth/bluez/bus/Properties.h"

namespace corvane::host {

class BluezObjects;

/// One interface of one object was added, changed or removed.
struct Change {
    const BluezObjects& objects;  // as they are now
    const std::string& path;
    const std::string& interface;
    const Properties* before;  // null: the interface was added
    const Properties* now;     // null: it was removed
    bool isFound;              // added together with its device: it may have been so for long
};

/// The value of that name now, if it is a new one; else null.
template <typename T>
const T* changedTo(const Change& change, std::string_view name) {
    const auto* const now = change.now == nullptr ? nullptr : findProperty<T>(*change.now, name);
    const auto* const before =
        change.before == nullptr ? nullptr : findProperty<T>(*change.before, name);
    return now != nullptr && before != nullptr && *now == *before ? nullptr : now;
}

/// Owner: BluezObjects. Threads: main thread. Errors: what a callback throws, after the
/// state of the reporter itself has been changed.
class BluezReporter {
public:
    BluezReporter() = default;
    virtual ~BluezReporter() = default;
    BluezReporter(const BluezReporter&) = delete;
    BluezReporter& operator=(const BluezReporter&) = delete;

    virtual void onChange(const Change& change) = 0;

    /// The objects were found as they are: nothing of it is an event, except the adapter's
    /// state.
    virtual void onSnapshot(const BluezObjects&) {}
};

}  // namespace corvane::host
