// The D-Bus interface org.corvane.Inject1: one method for each event, which returns
// the number of callbacks called; and signals about what happens to the callbacks, for
// the peers that called Watch.
#pragma once

#include <systemd/sd-bus.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/host/events/EventTable.h"

namespace corvane::host {

inline constexpr const char* INJECT_PATH = "/org/corvane/Inject";
inline constexpr const char* INJECT_INTERFACE = "org.corvane.Inject1";

/// Owner: InjectServer; outlives its clients. Threads: main thread.
class InjectInterface {
public:
    // What a row of the vtable points into.
    struct Method {
        const Event* event;
        std::string name;
        std::string signature;
        std::string argumentNames;  // each ended by a zero, as sd-bus wants them
    };

    /// The handlers are given the object's user data.
    InjectInterface(sd_bus_message_handler_t onEvent, sd_bus_message_handler_t onWatch);

    const Method& method(std::string_view name) const;
    const sd_bus_vtable* vtable() const { return m_vtable.data(); }

private:
    std::vector<Method> m_methods;
    std::vector<sd_bus_vtable> m_vtable;
};

}  // namespace corvane::host
