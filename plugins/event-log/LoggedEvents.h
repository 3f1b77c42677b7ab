// All events that a plugin can subscribe to, with the names that the log uses for them and for
// their arguments.
#pragma once

#include <IRequestBroker.h>

#include <array>
#include <span>

namespace eventlog {

struct Argument {
    // Implicit, because most arguments have only a name.
    constexpr Argument(const char* itsName = nullptr, bool passkey = false)
        : name(itsName), isPasskey(passkey) {}

    const char* name;
    bool isPasskey;
};

struct Event {
    const char* name;
    std::array<Argument, 5> arguments;
    void (*subscribe)(IRequestBroker& broker, const Event& event);
    int (IRequestBroker::*unsubscribe)();
};

std::span<const Event> allEvents();

}  // namespace eventlog
