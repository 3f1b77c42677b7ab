// Values as text.
#include "platform/host/events/ValueText.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

namespace corvane::host {

namespace {

template <typename Integer>
bool parseNumber(std::string_view text, Integer& value, int base) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, base);
    return error == std::errc() && stop == end;
}

Value parseInteger(const Field& field, std::string_view text) {
    const bool hexadecimal = text.starts_with("0x") && !text.starts_with("0x-");
    int value = 0;
    if (!parseNumber(hexadecimal ? text.substr(2) : text, value, hexadecimal ? 16 : 10)) {
        throw InvalidValue(field, text);
    }
    return value;
}

Value parseSmall(const Field& field, std::string_view text, int highest) {
    auto value = parseInteger(field, text);
    if (std::get<int>(value) < 0 || std::get<int>(value) > highest) {
        throw InvalidValue(field, text);
    }
    return value;
}

Value parseBoolean(const Field& field, std::string_view text) {
    if (text != "true" && text != "false") {
        throw InvalidValue(field, text);
    }
    return text == "true";
}

Value parseEnumeration(const Field& field, std::string_view text) {
    for (const auto& entry : field.allowed) {
        if (text == entry.name || text == std::to_string(entry.value)) {
            return entry.value;
        }
    }
    throw InvalidValue(field, text);
}

Value parseBytes(const Field& field, std::string_view text) {
    Bytes bytes;
    if (text.size() % 2 != 0) {
        throw InvalidValue(field, text);
    }
    for (std::size_t i = 0; i < text.size(); i += 2) {
        unsigned char byte = 0;
        if (!parseNumber(text.substr(i, 2), byte, 16)) {
            throw InvalidValue(field, text);
        }
        bytes.push_back(static_cast<char>(byte));
    }
    return bytes;
}

Value parseUuids(const Field& field, std::string_view text) {
    Uuids uuids;
    while (!text.empty()) {
        const auto comma = text.find(',');
        uuids.emplace_back(text.substr(0, comma));
        if (uuids.back().empty() || comma == text.size() - 1) {
            throw InvalidValue(field, text);
        }
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
    }
    return uuids;
}

}  // namespace

InvalidValue::InvalidValue(const Field& field, std::string_view given)
    : std::runtime_error(std::string(field.name) + " can't be \"" + std::string(given) +
                         "\"; it must be " + allowedText(field)) {}

Value parseValue(const Field& field, std::string_view text) {
    switch (field.kind) {
        case Kind::Integer:
            return parseInteger(field, text);
        case Kind::Byte:
            return parseSmall(field, text, UINT8_MAX);
        case Kind::Short:
            return parseSmall(field, text, UINT16_MAX);
        case Kind::Count:
            return text == "auto" ? Value() : parseInteger(field, text);
        case Kind::Boolean:
            return parseBoolean(field, text);
        case Kind::Text:
            return std::string(text);
        case Kind::Enumeration:
            return parseEnumeration(field, text);
        case Kind::Bytes:
            return parseBytes(field, text);
        case Kind::Uuids:
            return parseUuids(field, text);
        case Kind::Record:
            break;
    }
    throw InvalidValue(field, text);
}

std::string allowedText(const Field& field) {
    switch (field.kind) {
        case Kind::Integer:
            return "an integer of 32 bits";
        case Kind::Byte:
            return "an integer from 0 to 255";
        case Kind::Short:
            return "an integer from 0 to 65535";
        case Kind::Count:
            return "auto, for as many as are given, or an integer of 32 bits";
        case Kind::Boolean:
            return "true or false";
        case Kind::Text:
            return "a text in UTF-8";
        case Kind::Bytes:
            return "bytes, two hexadecimal digits each";
        case Kind::Uuids:
            return "UUIDs in UTF-8, joined by commas";
        case Kind::Record:
            return "given by its fields, each by its own name";
        case Kind::Enumeration:
            break;
    }
    std::string text;
    for (const auto& entry : field.allowed) {
        text += text.empty() ? "" : &entry == &field.allowed.back() ? " or " : ", ";
        text += std::string(entry.name) + " (" + std::to_string(entry.value) + ")";
    }
    return text;
}

}  // namespace corvane::host
