// The properties of one interface of a BlueZ object, read from a message.
#include "Properties.h"

#include <utility>

namespace corvane::host {

namespace {

Property readBasic(sd_bus_message* message, char type) {
    if (type == SD_BUS_TYPE_BOOLEAN) {
        int value = 0;
        checked(sd_bus_message_read_basic(message, type, &value));
        return value != 0;
    }
    if (type == SD_BUS_TYPE_UINT32) {
        std::uint32_t value = 0;
        checked(sd_bus_message_read_basic(message, type, &value));
        return value;
    }
    return readName(message, type);
}

bool isRead(std::string_view type) {
    return type == "b" || type == "u" || type == "s" || type == "o";
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
        const char* type = nullptr;
        checked(sd_bus_message_peek_type(message, nullptr, &type));
        if (!isRead(type)) {
            checked(sd_bus_message_skip(message, "v"));
            return;
        }
        const char basicType = *type;
        checked(sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, type));
        properties.insert_or_assign(std::move(name), readBasic(message, basicType));
        checked(sd_bus_message_exit_container(message));
    });
    return properties;
}

}  // namespace corvane::host
