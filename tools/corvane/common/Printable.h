// Text of unknown origin for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace corvane::tool {

/// The text with every byte as \xNN that isn't part of a well-formed UTF-8 character, and those of
/// control characters and of characters that change the direction of writing. Characters in
/// `kept` stay as they are.
std::string printable(std::string_view text, std::string_view kept = "");

}  // namespace corvane::tool
