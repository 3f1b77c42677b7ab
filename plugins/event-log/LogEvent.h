// One callback for all the events: a template, from which the compiler makes a
// function of the right type for each.
#pragma once

#include <IRequestBroker.h>
#include <dlog.h>

#include <cstddef>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "plugins/event-log/Describe.h"
#include "plugins/event-log/Events.h"

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

/// The callback. The user data, always the last argument, is the event's row. Everything
/// else is lent to the plugin for the call only: what is to be kept must be copied.
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

/// Subscribes to the event whose broker operation is named: subscribe<&IRequestBroker::...>.
template <auto operation>
void subscribe(IRequestBroker& broker, const Event& event) {
    subscribeWith(broker, operation, event);
}

}  // namespace eventlog
