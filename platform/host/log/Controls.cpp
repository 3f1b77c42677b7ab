// Finds control characters in UTF-8 and in bytes that are not UTF-8.
#include "platform/host/log/Controls.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace corvane::host {

namespace {

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < ' ' && c != '\t') || (byte >= 0x7f && byte <= 0x9f);
}

// Returns the size of the UTF-8 character at the start of the text, or 1 if there is none.
std::size_t characterSize(std::string_view text) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const std::size_t size = byte(0) >= 0xf0 ? 4 : byte(0) >= 0xe0 ? 3 : 2;
    if (byte(0) < 0xc2 || byte(0) > 0xf4 || text.size() < size) {
        return 1;
    }
    // An overlong form could hide a control character.
    if ((byte(0) == 0xe0 && byte(1) < 0xa0) || (byte(0) == 0xf0 && byte(1) < 0x90)) {
        return 1;
    }
    const auto rest = text.substr(1, size - 1);
    const bool isWhole = std::ranges::all_of(rest, [](char c) { return (c & 0xc0) == 0x80; });
    return isWhole ? size : 1;
}

}  // namespace

void replaceControls(std::span<char> text, NewLines newLines) noexcept {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t bytes = characterSize({text.data() + at, text.size() - at});
        const bool isTwoByteControl = bytes == 2 && text[at] == '\xc2' && isControl(text[at + 1]);
        const bool isKept = text[at] == '\n' && newLines == NewLines::kept;
        if (isTwoByteControl || (bytes == 1 && isControl(text[at]) && !isKept)) {
            std::ranges::fill(text.subspan(at, bytes), ' ');
        }
        at += bytes;
    }
}

}  // namespace corvane::host
