// Values as text: how they are given on a command line and shown in a list.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::host {

/// A value that isn't allowed. The text names the field and says what is allowed.
class InvalidValue : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    InvalidValue(const Field& field, std::string_view given);
};

/// Integers are decimal or hexadecimal (0x), booleans true or false, enumerations names or
/// their decimal values, bytes hexadecimal digits, UUIDs a list with commas. Throws
/// InvalidValue. A record has no text of its own.
Value parseValue(const Field& field, std::string_view text);

/// What a field takes, in words.
std::string allowedText(const Field& field);

}  // namespace corvane::host
