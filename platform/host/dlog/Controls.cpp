// Control characters in the text of a record.
#include "platform/host/dlog/Controls.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace corvane::host {

namespace {

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < ' ' && c != '\t') || (byte >= 0x7f && byte <= 0x9f);
}

// Whether there may be one: a tab and a letter outside of ASCII are taken for one. Eight at a
// time, the last eight perhaps once more.
bool mayHaveControls(const char* text, std::size_t size) {
    constexpr std::uint64_t each = 0x0101010101010101;
    if (size < sizeof each) {
        return std::any_of(text, text + size, isControl);
    }
    std::uint64_t found = 0;
    const auto look = [&found](const char* at) {
        std::uint64_t word;
        std::memcpy(&word, at, sizeof word);
        const std::uint64_t deleted = word ^ each * 0x7f;
        found |= (word - each * ' ') | (deleted - each) | word;
    };
    const char* const last = text + size - sizeof each;
    for (; text < last; text += sizeof each) {
        look(text);
    }
    look(last);
    return (found & each * 0x80) != 0;
}

// The size of the UTF-8 character at the start of the text; 1 if there is none.
std::size_t characterSize(std::string_view text) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const std::size_t size = byte(0) >= 0xf0 ? 4 : byte(0) >= 0xe0 ? 3 : 2;
    if (byte(0) < 0xc2 || byte(0) > 0xf4 || text.size() < size) {
        return 1;
    }
    // A form that is longer than its character needs could hide one.
    if ((byte(0) == 0xe0 && byte(1) < 0xa0) || (byte(0) == 0xf0 && byte(1) < 0x90)) {
        return 1;
    }
    const auto rest = text.substr(1, size - 1);
    const bool isWhole = std::ranges::all_of(rest, [](char c) { return (c & 0xc0) == 0x80; });
    return isWhole ? size : 1;
}

}  // namespace

void replaceControls(char* text, std::size_t size, NewLines newLines) noexcept {
    if (!mayHaveControls(text, size)) {
        return;
    }
    for (std::size_t at = 0; at < size;) {
        const std::size_t bytes = characterSize({text + at, size - at});
        const bool isTwoByteControl = bytes == 2 && text[at] == '\xc2' && isControl(text[at + 1]);
        const bool isKept = text[at] == '\n' && newLines == NewLines::kept;
        if (isTwoByteControl || (bytes == 1 && isControl(text[at]) && !isKept)) {
            std::fill_n(text + at, bytes, ' ');
        }
        at += bytes;
    }
}

}  // namespace corvane::host
