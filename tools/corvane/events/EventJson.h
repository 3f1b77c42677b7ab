// Describes events in JSON, for programs that emit them.
#pragma once

#include <nlohmann/json.hpp>

#include "platform/host/events/EventTable.h"

namespace corvane::tool {

/// Returns the type of a field: "integer", "byte", ... The text output of `corvane list` uses the
/// same words.
const char* typeName(corvane::host::Kind kind);

/// Returns the values of an enumeration or a boolean; nothing for other types.
std::vector<std::string> valueNames(const corvane::host::Field& field);

/// Returns an object with name, callback, meaning and arguments. A field of a record is listed as
/// an argument that names its record.
nlohmann::ordered_json eventJson(const corvane::host::Event& event);

}  // namespace corvane::tool
