// The D-Bus interface org.corvane.Inject1: one method for each event that can be
// delivered. It returns the number of callbacks called.
#pragma once

#include "BusPump.h"
#include "Deliveries.h"
#include "EventTable.h"

#include <systemd/sd-bus.h>

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::host {

/// Owner: InjectServer; outlives its clients. Threads: main thread.
class InjectInterface {
public:
    // What a row of the vtable points into.
    struct Method {
        const Event* event;
        const Delivery* delivery;
        std::string name;
        std::string signature;
        std::string argumentNames;  // each ended by a zero, as sd-bus wants them
    };

    /// Throws std::logic_error if a delivery is of no event in the table.
    explicit InjectInterface(std::span<const Delivery> deliveries);

    const Method& method(std::string_view name) const;
    const sd_bus_vtable* vtable() const { return m_vtable.data(); }

private:
    std::vector<Method> m_methods;
    std::vector<sd_bus_vtable> m_vtable;
};

/// One connected peer. Owner: InjectServer. Threads: main thread.
class InjectClient {
public:
    /// `onLost` is called when the peer has gone, and may destroy the client. Throws
    /// std::runtime_error if the interface can't be offered.
    InjectClient(BusPtr bus, const InjectInterface& interface, std::function<void()> onLost);

    int emit(sd_bus_message* message, sd_bus_error* error);

private:
    const InjectInterface& m_interface;
    BusPump m_pump;
};

}  // namespace corvane::host
