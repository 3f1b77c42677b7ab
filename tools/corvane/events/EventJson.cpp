// Describes events in JSON.
#include "tools/corvane/events/EventJson.h"

#include <span>
#include <string>
#include <vector>

namespace corvane::tool {

using namespace corvane::host;

namespace {

void addArguments(nlohmann::ordered_json& list, std::span<const Field> fields, const char* record) {
    for (const auto& field : fields) {
        if (field.kind == Kind::Record) {
            addArguments(list, field.fields, field.name);
            continue;
        }
        nlohmann::ordered_json argument{{"name", field.name}};
        if (record != nullptr) {
            argument["record"] = record;
        }
        argument["type"] = typeName(field.kind);
        argument["default"] = field.defaultText;
        argument["values"] = valueNames(field);
        list.push_back(argument);
    }
}

}  // namespace

const char* typeName(Kind kind) {
    switch (kind) {
        case Kind::Integer:
            return "integer";
        case Kind::Byte:
            return "byte";
        case Kind::Short:
            return "short";
        case Kind::Count:
            return "count";
        case Kind::Boolean:
            return "boolean";
        case Kind::Text:
            return "text";
        case Kind::Enumeration:
            return "enumeration";
        case Kind::Bytes:
            return "bytes";
        case Kind::Uuids:
            return "uuids";
        case Kind::Record:
            break;
    }
    return "record";
}

std::vector<std::string> valueNames(const Field& field) {
    if (field.kind == Kind::Boolean) {
        return {"true", "false"};
    }
    std::vector<std::string> names;
    for (const auto& entry : field.allowed) {
        names.emplace_back(entry.name);
    }
    return names;
}

nlohmann::ordered_json eventJson(const Event& event) {
    nlohmann::ordered_json object{
        {"name", event.name}, {"callback", event.callback}, {"meaning", event.meaning}};
    object["arguments"] = nlohmann::ordered_json::array();
    addArguments(object["arguments"], event.arguments, nullptr);
    return object;
}

}  // namespace corvane::tool
