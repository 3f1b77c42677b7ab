// Escapes text of unknown origin for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace corvane::tool {

/// Returns the text with these bytes written as \xNN: bytes that aren't well-formed UTF-8, control
/// characters, and characters that change the text direction. Characters in `kept` stay as they
/// are.
std::string printable(std::string_view text, std::string_view kept = "");

}  // namespace corvane::tool
