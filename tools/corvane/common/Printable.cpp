// Escapes text of unknown origin for a terminal.
#include "tools/corvane/common/Printable.h"

#include <algorithm>
#include <cstddef>

namespace corvane::tool {

namespace {

struct Character {
    char32_t code;
    std::size_t size;  // in bytes; 0: not well-formed
};

Character firstOf(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return {first, 1};
    }
    const std::size_t size = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < size) {
        return {0, 0};
    }
    char32_t code = first & (0x7f >> size);
    for (std::size_t i = 1; i < size; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xc0) != 0x80) {
            return {0, 0};
        }
        code = code << 6 | (next & 0x3f);
    }
    constexpr char32_t least[] = {0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
    return {code, code < least[size - 2] || code > 0x10ffff || isSurrogate ? 0 : size};
}

bool isPlain(char32_t code) {
    const bool isControl = code < 0x20 || (code >= 0x7f && code < 0xa0);
    const bool turnsWriting = code == 0x61c || (code >= 0x200e && code <= 0x200f) ||
                              (code >= 0x2028 && code <= 0x202e) ||
                              (code >= 0x2066 && code <= 0x2069);
    return !isControl && !turnsWriting;
}

}  // namespace

std::string printable(std::string_view text, std::string_view kept) {
    constexpr const char* digits = "0123456789abcdef";
    std::string result;
    while (!text.empty()) {
        const auto [code, size] = firstOf(text);
        const auto bytes = text.substr(0, std::max<std::size_t>(size, 1));
        if (size > 0 && (isPlain(code) || kept.find(text.front()) != std::string_view::npos)) {
            result += bytes;
        } else {
            for (const char byte : bytes) {
                result += "\\x";
                result += digits[static_cast<unsigned char>(byte) >> 4];
                result += digits[static_cast<unsigned char>(byte) & 15];
            }
        }
        text.remove_prefix(bytes.size());
    }
    return result;
}

}  // namespace corvane::tool
