// The properties of an interface of a BlueZ object, and functions that read them from a
// D-Bus message. Reading throws MalformedMessage if the next value has an unexpected type.
#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane::host {

/// The entries of an a{qv} as bytes: for each the key in two little-endian bytes, then the
/// value.
using KeyedBytes = std::vector<char>;

using Property = std::variant<bool, std::uint8_t, std::int16_t, std::uint16_t, std::uint32_t,
                              std::string, std::vector<std::string>, KeyedBytes>;
using Properties = std::map<std::string, Property, std::less<>>;

/// Returns the value of a property, or null if it is missing or has another type.
template <typename T>
const T* findProperty(const Properties& properties, std::string_view name) {
    const auto found = properties.find(name);
    return found == properties.end() ? nullptr : std::get_if<T>(&found->second);
}

/// Returns the value of a property, or `otherwise`. `properties` may be null.
template <typename T>
T propertyOr(const Properties* properties, std::string_view name, T otherwise = {}) {
    const auto* const value = properties == nullptr ? nullptr : findProperty<T>(*properties, name);
    return value == nullptr ? otherwise : *value;
}

class MalformedMessage : public std::exception {};

/// Reads an a{sv}. Values of types that Property does not have are skipped.
Properties readProperties(sd_bus_message* message);

/// Reads an array of strings.
std::vector<std::string> readNames(sd_bus_message* message);

/// Reads a string or an object path, as `type` says.
std::string readName(sd_bus_message* message, char type);

/// Returns `result`, or throws MalformedMessage if it is negative.
int checked(int result);

/// Reads an array of dictionary entries of the type `contents`. Calls `readEntry` in each.
template <typename ReadEntry>
void readDictionary(sd_bus_message* message, const std::string& contents, ReadEntry readEntry) {
    checked(
        sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, ('{' + contents + '}').c_str()));
    while (checked(sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY,
                                                  contents.c_str())) > 0) {
        readEntry();
        checked(sd_bus_message_exit_container(message));
    }
    checked(sd_bus_message_exit_container(message));
}

}  // namespace corvane::host
