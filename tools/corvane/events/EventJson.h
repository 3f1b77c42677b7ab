// The events that can be injected as JSON, for programs that make events.
#pragma once

#include <nlohmann/json.hpp>

#include "platform/host/events/EventTable.h"

namespace corvane::tool {

/// What a field takes: "integer", "byte", ... The list in text uses the same words.
const char* typeName(corvane::host::Kind kind);

/// The values a field may have if there are few: those of an enumeration or of a boolean.
std::vector<std::string> valueNames(const corvane::host::Field& field);

/// An object with name, callback, meaning and arguments. Fields of records are arguments
/// with the name of their record.
nlohmann::ordered_json eventJson(const corvane::host::Event& event);

}  // namespace corvane::tool
