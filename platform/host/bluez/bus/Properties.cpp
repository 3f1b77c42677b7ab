// Reads the properties of an interface of a BlueZ object from a D-Bus message. Values of
// unexpected types are skipped.
#include "platform/host/bluez/bus/Properties.h"

#include <optional>
#include <utility>

namespace corvane::host {

namespace {

template <typename T>
T readNumber(sd_bus_message* message, char type) {
    T value{};
    checked(sd_bus_message_read_basic(message, type, &value));
    return value;
}

std::string_view typeOfVariant(sd_bus_message* message) {
    const char* type = nullptr;
    checked(sd_bus_message_peek_type(message, nullptr, &type));
    return type;
}

KeyedBytes readKeyedBytes(sd_bus_message* message) {
    KeyedBytes bytes;
    readDictionary(message, "qv", [&] {
        const auto key = readNumber<std::uint16_t>(message, SD_BUS_TYPE_UINT16);
        if (typeOfVariant(message) != "ay") {
            checked(sd_bus_message_skip(message, "v"));
            return;
        }
        const void* data = nullptr;
        std::size_t size = 0;
        checked(sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, "ay"));
        checked(sd_bus_message_read_array(message, SD_BUS_TYPE_BYTE, &data, &size));
        checked(sd_bus_message_exit_container(message));
        const auto* const first = static_cast<const char*>(data);
        bytes.push_back(static_cast<char>(key & 0xff));
        bytes.push_back(static_cast<char>(key >> 8));
        bytes.insert(bytes.end(), first, first + size);
    });
    return bytes;
}

Property readBasic(sd_bus_message* message, char type) {
    switch (type) {
        case SD_BUS_TYPE_BOOLEAN:
            return readNumber<int>(message, type) != 0;
        case SD_BUS_TYPE_BYTE:
            return readNumber<std::uint8_t>(message, type);
        case SD_BUS_TYPE_INT16:
            return readNumber<std::int16_t>(message, type);
        case SD_BUS_TYPE_UINT16:
            return readNumber<std::uint16_t>(message, type);
        case SD_BUS_TYPE_UINT32:
            return readNumber<std::uint32_t>(message, type);
        default:
            return readName(message, type);
    }
}

std::optional<Property> readValue(sd_bus_message* message, std::string_view type) {
    if (type == "as") {
        return readNames(message);
    }
    if (type == "a{qv}") {
        return readKeyedBytes(message);
    }
    if (type.size() == 1 && std::string_view("bynquso").find(type) != std::string_view::npos) {
        return readBasic(message, type[0]);
    }
    return std::nullopt;
}

}  // namespace

int checked(int result) {
    if (result < 0) {
        throw MalformedMessage();
    }
    return result;
}

std::string readName(sd_bus_message* message, char type) {
    const char* text = "";
    checked(sd_bus_message_read_basic(message, type, &text));
    return text;
}

std::vector<std::string> readNames(sd_bus_message* message) {
    std::vector<std::string> names;
    checked(sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "s"));
    const char* text = nullptr;
    while (checked(sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text)) > 0) {
        names.emplace_back(text);
    }
    checked(sd_bus_message_exit_container(message));
    return names;
}

Properties readProperties(sd_bus_message* message) {
    Properties properties;
    readDictionary(message, "sv", [&] {
        auto name = readName(message, SD_BUS_TYPE_STRING);
        const std::string type(typeOfVariant(message));
        checked(sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, type.c_str()));
        if (auto value = readValue(message, type)) {
            properties.insert_or_assign(std::move(name), std::move(*value));
        } else {
            checked(sd_bus_message_skip(message, type.c_str()));
        }
        checked(sd_bus_message_exit_container(message));
    });
    return properties;
}

}  // namespace corvane::host
