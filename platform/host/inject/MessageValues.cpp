// The arguments of an injected event, read from its D-Bus message.
#include "platform/host/inject/MessageValues.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "platform/host/events/ValueText.h"

namespace corvane::host {

namespace {

int validated(int result) {
    if (result < 0) {
        throw InvalidValue("the message is broken");
    }
    return result;
}

template <typename Number>
int readNumber(sd_bus_message* message, char type) {
    Number number = 0;
    validated(sd_bus_message_read_basic(message, type, &number));
    return static_cast<int>(number);
}

std::string readText(sd_bus_message* message) {
    const char* text = nullptr;
    validated(sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text));
    return text;
}

Bytes readBytes(sd_bus_message* message) {
    const void* data = nullptr;
    std::size_t size = 0;
    validated(sd_bus_message_read_array(message, SD_BUS_TYPE_BYTE, &data, &size));
    const auto* const begin = static_cast<const char*>(data);
    return size == 0 ? Bytes() : Bytes(begin, begin + size);
}

Uuids readUuids(sd_bus_message* message) {
    Uuids uuids;
    validated(sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "s"));
    const char* text = nullptr;
    while (validated(sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text)) > 0) {
        uuids.emplace_back(text);
    }
    validated(sd_bus_message_exit_container(message));
    return uuids;
}

Value readValue(sd_bus_message* message, const Field& field) {
    switch (field.kind) {
        case Kind::Integer:
        case Kind::Count:
            return readNumber<std::int32_t>(message, SD_BUS_TYPE_INT32);
        case Kind::Byte:
            return readNumber<std::uint8_t>(message, SD_BUS_TYPE_BYTE);
        case Kind::Short:
            return readNumber<std::uint16_t>(message, SD_BUS_TYPE_UINT16);
        case Kind::Boolean:
            return readNumber<int>(message, SD_BUS_TYPE_BOOLEAN) != 0;
        case Kind::Text:
            return readText(message);
        case Kind::Bytes:
            return readBytes(message);
        case Kind::Uuids:
            return readUuids(message);
        case Kind::Enumeration:
        case Kind::Record:
            break;
    }
    return parseValue(field, readText(message));
}

const Field& fieldOf(const Field& record, std::string_view key) {
    std::string names;
    for (const auto& field : record.fields) {
        if (key == field.name) {
            return field;
        }
        names += (names.empty() ? "" : ", ") + std::string(field.name);
    }
    throw InvalidValue(std::string(record.name) + " has no field \"" + std::string(key) +
                       "\"; its fields are " + names);
}

void readField(sd_bus_message* message, const Field& record, Values& values) {
    const auto& field = fieldOf(record, readText(message));
    const std::string_view wanted = signatureOf(field.kind);
    const char* given = nullptr;
    validated(sd_bus_message_peek_type(message, nullptr, &given));
    if (wanted != given) {
        throw InvalidValue(std::string(field.name) + " can't be of the type \"" + given +
                           "\"; it must be of \"" + std::string(wanted) + "\", " +
                           allowedText(field));
    }
    validated(sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, given));
    values.set(field, readValue(message, field));
    validated(sd_bus_message_exit_container(message));
}

}  // namespace

Values readValues(sd_bus_message* message, const Event& event) {
    Values values(event);
    for (const auto& argument : event.arguments) {
        if (argument.kind != Kind::Record) {
            values.set(argument, readValue(message, argument));
            continue;
        }
        validated(sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "{sv}"));
        while (validated(sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv")) >
               0) {
            readField(message, argument, values);
            validated(sd_bus_message_exit_container(message));
        }
        validated(sd_bus_message_exit_container(message));
    }
    return values;
}

}  // namespace corvane::host
