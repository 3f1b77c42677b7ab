// The values with which the platform may deliver an event.
#include "platform/host/events/EventVariants.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "platform/host/events/EventArguments.h"
#include "platform/host/events/EventTypes.h"
#include "platform/host/events/ValueText.h"

namespace corvane::host {

namespace {

constexpr std::size_t LONGEST_NAME = 248;  // of a Bluetooth device
constexpr std::size_t MANY_BYTES = 256;
constexpr int HIGHEST_VOLUME = 127;  // all arguments of Kind::Short are volumes

std::vector<std::string> numbers(std::initializer_list<int> all) {
    std::vector<std::string> texts;
    for (const int number : all) {
        texts.push_back(std::to_string(number));
    }
    return texts;
}

bool isAddress(const Field& field) {
    return field.defaultText == std::string_view(DEFAULT_ADDRESS);
}

std::vector<std::string> namesOf(const Field& field) {
    std::vector<std::string> names;
    for (const auto& entry : field.allowed) {
        names.emplace_back(entry.name);
    }
    return names;
}

// Texts that parseValue takes. The default may be among them.
std::vector<std::string> textsOf(const Field& field) {
    switch (field.kind) {
        case Kind::Integer:
            return numbers({INT_MIN, -1, 0, 1, INT_MAX});
        case Kind::Byte:
            return numbers({0, UINT8_MAX});
        case Kind::Short:
            return numbers({0, HIGHEST_VOLUME});
        case Kind::Count:
            return numbers({-1, 0});
        case Kind::Boolean:
            return {"true", "false"};
        case Kind::Text:
            return {"", isAddress(field) ? "11:22:33:44:55:66" : std::string(LONGEST_NAME, 'n')};
        case Kind::Enumeration:
            return namesOf(field);
        case Kind::Bytes:
            return {"", "00", std::string(2 * MANY_BYTES, 'f')};
        case Kind::Uuids:
            return {"", "1101,110a,110b,110c,110d,110e,111e,1200"};
        case Kind::Record:
            break;
    }
    return {};
}

// A value without a name that the C++ type can hold: it has as many bits as the largest value
// needs.
std::optional<int> unknownValue(const Field& field) {
    const int largest = std::ranges::max(field.allowed, {}, &EnumerationName::value).value;
    const int end = static_cast<int>(std::bit_ceil(static_cast<unsigned>(largest) + 1));
    for (int value = end - 1; value >= 0; --value) {
        if (std::ranges::find(field.allowed, value, &EnumerationName::value) ==
            field.allowed.end()) {
            return value;
        }
    }
    return std::nullopt;
}

void addVariants(std::vector<EventVariant>& variants, const Event& event,
                 std::span<const Field> fields) {
    for (const auto& field : fields) {
        const auto add = [&](Value value, const std::string& text) {
            Values values(event);
            values.set(field, std::move(value));
            variants.push_back({std::move(values), std::string(field.name) + '=' + text});
        };
        for (const auto& text : textsOf(field)) {
            if (text != field.defaultText) {
                add(parseValue(field, text), text);
            }
        }
        if (field.kind == Kind::Text && !isAddress(field)) {
            add("\xC3\xFF", R"(\xc3\xff)");
        }
        if (const auto unknown =
                field.kind == Kind::Enumeration ? unknownValue(field) : std::nullopt) {
            add(*unknown, std::to_string(*unknown));
        }
        addVariants(variants, event, field.fields);
    }
}

}  // namespace

std::vector<EventVariant> variantsOf(const Event& event) {
    std::vector<EventVariant> variants{{Values(event), ""}};
    addVariants(variants, event, event.arguments);
    if (findField(event, "service_count") != nullptr) {
        variants.push_back({parseArguments(event, {"service_uuid=", "service_count=3"}),
                            "service_uuid= service_count=3"});
    }
    return variants;
}

}  // namespace corvane::host
