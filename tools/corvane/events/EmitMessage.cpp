// Appends the arguments of an event to a D-Bus message.
#include "tools/corvane/events/EmitMessage.h"

#include <stdexcept>
#include <string>
#include <variant>

#include "platform/host/events/ValueText.h"

namespace corvane::tool {

using namespace corvane::host;

namespace {

void requireSent(int result, const char* name) {
    if (result < 0) {
        throw std::runtime_error(std::string(name) + " can't be sent");
    }
}

int appendValue(sd_bus_message* message, const Field& field, const Values& values) {
    switch (field.kind) {
        case Kind::Integer:
            return sd_bus_message_append(message, "i", values.get<int>(field.name));
        case Kind::Byte:
            return sd_bus_message_append(message, "y", values.get<int>(field.name));
        case Kind::Short:
            return sd_bus_message_append(message, "q", values.get<int>(field.name));
        case Kind::Count:
            return sd_bus_message_append(message, "i", values.get<int>(field.name));
        case Kind::Boolean:
            return sd_bus_message_append(message, "b", values.get<bool>(field.name) ? 1 : 0);
        case Kind::Text:
            return sd_bus_message_append(message, "s", values.get<std::string>(field.name).c_str());
        case Kind::Enumeration:
            return sd_bus_message_append(message, "s",
                                         std::to_string(values.get<int>(field.name)).c_str());
        case Kind::Bytes: {
            const auto& bytes = values.get<Bytes>(field.name);
            return sd_bus_message_append_array(message, 'y', bytes.data(), bytes.size());
        }
        case Kind::Uuids:
        case Kind::Record:
            break;
    }
    int result = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "s");
    for (const auto& uuid : values.get<Uuids>(field.name)) {
        result = result < 0 ? result : sd_bus_message_append(message, "s", uuid.c_str());
    }
    return result < 0 ? result : sd_bus_message_close_container(message);
}

void appendRecord(sd_bus_message* message, const Field& record, const Values& values) {
    requireSent(sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "{sv}"), record.name);
    for (const auto& field : record.fields) {
        if (values.find<std::monostate>(field.name) != nullptr) {
            continue;
        }
        requireSent(sd_bus_message_open_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv"),
                    field.name);
        requireSent(sd_bus_message_append(message, "s", field.name), field.name);
        requireSent(
            sd_bus_message_open_container(message, SD_BUS_TYPE_VARIANT, signatureOf(field.kind)),
            field.name);
        appendArguments(message, {&field, 1}, values);
        requireSent(sd_bus_message_close_container(message), field.name);
        requireSent(sd_bus_message_close_container(message), field.name);
    }
    requireSent(sd_bus_message_close_container(message), record.name);
}

}  // namespace

void appendArguments(sd_bus_message* message, std::span<const Field> fields, const Values& values) {
    for (const auto& field : fields) {
        if (field.kind == Kind::Record) {
            appendRecord(message, field, values);
        } else {
            if (appendValue(message, field, values) < 0) {
                throw std::runtime_error(std::string(field.name) + " must be " +
                                         allowedText(field));
            }
        }
    }
}

}  // namespace corvane::tool
