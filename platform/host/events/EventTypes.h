// What the type of an event's set function tells: the callback's type and its arguments.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <sound_manager_tv.h>

#include <array>
#include <cstddef>
#include <tuple>
#include <utility>

namespace corvane::host {

template <typename SetFunction>
struct SetFunctionTraits;

template <typename... All>
struct SetFunctionTraits<int (*)(void (*)(All...), void*)> {
    using Callback = void (*)(All...);
    using AllTypes = std::tuple<All...>;  // the last is the user data
    static constexpr std::size_t ARGUMENT_COUNT = sizeof...(All) - 1;
};

template <auto setFunction>
using CallbackOf = typename SetFunctionTraits<decltype(setFunction)>::Callback;

template <auto setFunction, std::size_t index>
using ArgumentType =
    std::tuple_element_t<index, typename SetFunctionTraits<decltype(setFunction)>::AllTypes>;

template <auto setFunction>
using ArgumentIndices =
    std::make_index_sequence<SetFunctionTraits<decltype(setFunction)>::ARGUMENT_COUNT>;

/// An argument as a row of the table gives it. The default is as ValueText.h reads it; a record
/// has none of its own.
struct Argument {
    const char* name;
    const char* defaultText = "";
};

inline constexpr const char* DEFAULT_ADDRESS = "AA:BB:CC:DD:EE:FF";
inline constexpr const char* DEFAULT_NAME = "Headset";

/// The arguments of each event. A row with too many doesn't compile here, one with too few not
/// in EventTable.cpp.
template <auto setFunction>
inline constexpr std::array<Argument, 0> argumentsOf{};

#define EVENT(library, name, setFunction, unsetFunction, meaning, ...)           \
    template <>                                                                  \
    inline constexpr std::array<Argument, ArgumentIndices<&setFunction>::size()> \
        argumentsOf<&setFunction>{{__VA_ARGS__}};
#include "platform/host/events/Events.def"
#undef EVENT

}  // namespace corvane::host
