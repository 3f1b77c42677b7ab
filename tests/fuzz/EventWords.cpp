#include "tests/fuzz/EventWords.h"

#include <cstdio>
#include <span>

namespace {

using namespace corvane::host;

std::string hexadecimal(const Bytes& bytes) {
    std::string text;
    for (const char byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
        text += digits;
    }
    return text;
}

std::string joined(const Uuids& uuids) {
    std::string text;
    for (const auto& uuid : uuids) {
        text += (text.empty() ? "" : ",") + uuid;
    }
    return text;
}

std::string textOf(const Field& field, const Values& values) {
    switch (field.kind) {
        case Kind::Boolean:
            return values.get<bool>(field.name) ? "true" : "false";
        case Kind::Text:
            return values.get<std::string>(field.name);
        case Kind::Bytes:
            return hexadecimal(values.get<Bytes>(field.name));
        case Kind::Uuids:
            return joined(values.get<Uuids>(field.name));
        case Kind::Count:
            if (values.find<int>(field.name) == nullptr) {
                return "auto";
            }
            break;
        default:
            break;
    }
    return std::to_string(values.get<int>(field.name));
}

void append(std::vector<std::string>& words, std::span<const Field> fields, const Values& values) {
    for (const auto& field : fields) {
        if (field.kind == Kind::Record) {
            append(words, field.fields, values);
        } else {
            words.push_back(field.name + ('=' + textOf(field, values)));
        }
    }
}

}  // namespace

std::vector<std::string> wordsOf(const Event& event, const Values& values) {
    std::vector<std::string> words;
    append(words, event.arguments, values);
    return words;
}
