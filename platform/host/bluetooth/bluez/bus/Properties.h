// The properties of one interface of a BlueZ object, read from a message.
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

/// The bytes of a{qv} entries, one after the other: two little-endian bytes of the key,
/// then the entry's own.
using KeyedBytes = std::vector<char>;

using Property = std::variant<bool, std::uint8_t, std::int16_t, std::uint16_t, std::uint32_t,
                              std::string, std::vector<std::string>, KeyedBytes>;
using Properties = std::map<std::string, Property, std::less<>>;

/// The value of that name, or null if there is none or it has another type.
template <typename T>
const T* findProperty(const Properties& properties, std::string_view name) {
    const auto found = properties.find(name);
    return found == properties.end() ? nullptr : std::get_if<T>(&found->second);
}

/// The same, or an empty value; also for an interface that isn't there.
template <typename T>
T propertyOr(const Properties* properties, std::string_view name, T otherwise = {}) {
    const auto* const value = properties == nullptr ? nullptr : findProperty<T>(*properties, name);
    return value == nullptr ? otherwise : *value;
}

/// What comes next in a message isn't what belongs there.
class MalformedMessage : public std::exception {};

/// Reads the a{sv} that comes next; values of types not listed above are left out. All
/// functions that read throw MalformedMessage.
Properties readProperties(sd_bus_message* message);

/// Reads the `as` or string or object path that comes next.
std::vector<std::string> readNames(sd_bus_message* message);
std::string readName(sd_bus_message* message, char type);

/// Throws MalformedMessage for a negative `result`, else returns it.
int checked(int result);

/// Reads an array of dictionary entries `contents`, calling `readEntry` inside each.
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
