// Control characters in the text of a record.
#pragma once

#include <cstddef>

namespace corvane::host {

enum class NewLines { replaced, kept };

/// Replaces the bytes of control characters by blanks, but for tabs: those of ASCII, and U+0080 to
/// U+009F in UTF-8 or as single bytes outside of it. Any thread.
void replaceControls(char* text, std::size_t size, NewLines newLines) noexcept;

}  // namespace corvane::host
