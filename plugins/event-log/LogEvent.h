// One callback template for all events. The compiler instantiates it for the type of each event.
#pragma once

#include <IRequestBroker.h>
#include <dlog.h>

#include <cstddef>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "plugins/event-log/Describe.h"
#include "plugins/event-log/LoggedEvents.h"

namespace eventlog {

template <typename T>
void describeArgument(std::string& line, const Argument& argument, const T& value) {
    if constexpr (std::is_convertible_v<T, const char*>) {
        if (argument.isPasskey) {
            describeNamed(line, argument.name, Passkey{value});
            return;
        }
    }
    describeNamed(line, argument.name, value);
}

/// The callback. The user data, always the last argument, points to the event's row. The other
/// arguments are valid during the call only; a plugin has to copy what it keeps.
template <typename... All>
void logEvent(All... all) {
    const std::tuple arguments(all...);
    constexpr std::size_t count = sizeof...(All) - 1;
    const auto& event = *static_cast<const Event*>(std::get<count>(arguments));
    std::string line = event.name;
    [&]<std::size_t... i>(std::index_sequence<i...>) {
        (describeArgument(line, event.arguments[i], std::get<i>(arguments)), ...);
    }
    (std::make_index_sequence<count>());
    dlog_print(DLOG_PRIORITY_INFO, "EVENT_LOG", "%s", line.c_str());
}

template <typename... All>
void subscribeWith(IRequestBroker& broker,
                   int (IRequestBroker::*operation)(void (*callback)(All...), void* userData),
                   const Event& event) {
    (broker.*operation)(&logEvent<All...>, const_cast<Event*>(&event));
}

/// Subscribes to the event of a broker operation: subscribe<&IRequestBroker::...>.
template <auto operation>
void subscribe(IRequestBroker& broker, const Event& event) {
    subscribeWith(broker, operation, event);
}

}  // namespace eventlog
