// The values of one event's arguments and record fields, by name.
#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

#include "platform/host/events/EventTable.h"

namespace corvane::host {

using Bytes = std::vector<char>;
using Uuids = std::vector<std::string>;

/// Numbers and Enumeration, Boolean, Text, Bytes, Uuids; nothing for a count that is the size
/// of the array.
using Value = std::variant<std::monostate, int, bool, std::string, Bytes, Uuids>;

/// Owner: the code that handles one event. Not for use by several threads at once.
class Values {
public:
    /// Starts with the default of every argument and field of `event`.
    explicit Values(const Event& event);

    void set(const Field& field, Value value) { m_values[field.name] = std::move(value); }

    /// Throws std::out_of_range or std::bad_variant_access if the event has no such field.
    template <typename T>
    const T& get(const std::string& name) const {
        return std::get<T>(m_values.at(name));
    }

    /// The same, or null where the value is nothing or the event has no such field.
    template <typename T>
    const T* find(const std::string& name) const {
        const auto found = m_values.find(name);
        return found == m_values.end() ? nullptr : std::get_if<T>(&found->second);
    }

    template <typename T>
    T enumeration(const std::string& name) const {
        return static_cast<T>(get<int>(name));
    }

    bool operator==(const Values& other) const = default;

private:
    void setDefaults(std::span<const Field> fields);

    std::map<std::string, Value> m_values;
};

}  // namespace corvane::host
