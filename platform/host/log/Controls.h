// Removes control characters from the text of a log record, so that a record can neither look like
// two nor send commands to the terminal that shows it.
#pragma once

#include <span>

namespace corvane::host {

enum class NewLines { replaced, kept };

/// Replaces each byte of a control character with a blank, except tabs: those of ASCII, and U+0080
/// to U+009F in UTF-8 or as single bytes that are not part of UTF-8. Any thread; never throws.
void replaceControls(std::span<char> text, NewLines newLines) noexcept;

}  // namespace corvane::host
