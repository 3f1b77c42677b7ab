// The table of what can be injected: looking it up, and the names on D-Bus.
#include "platform/host/events/EventTable.h"

#include <algorithm>
#include <cctype>

namespace corvane::host {

namespace {

const Field* findAmong(std::span<const Field> fields, std::string_view wanted) {
    for (const auto& field : fields) {
        if (wanted == field.name) {
            return &field;
        }
        if (const auto* const inner = findAmong(field.fields, wanted)) {
            return inner;
        }
    }
    return nullptr;
}

}  // namespace

const Event* findEvent(std::string_view wanted) {
    const auto found =
        std::ranges::find_if(allEvents(), [&](const Event& event) { return wanted == event.name; });
    return found == allEvents().end() ? nullptr : &*found;
}

const Field* findField(const Event& event, std::string_view wanted) {
    return findAmong(event.arguments, wanted);
}

std::string methodName(const Event& event) {
    std::string method;
    bool wordBegins = true;
    for (const char letter : std::string_view(event.name)) {
        if (letter != '-') {
            method += wordBegins ? static_cast<char>(std::toupper(letter)) : letter;
        }
        wordBegins = letter == '-';
    }
    return method;
}

const char* signatureOf(Kind kind) {
    switch (kind) {
        case Kind::Integer:
        case Kind::Count:
            return "i";
        case Kind::Byte:
            return "y";
        case Kind::Short:
            return "q";
        case Kind::Boolean:
            return "b";
        case Kind::Text:
        case Kind::Enumeration:
            return "s";
        case Kind::Bytes:
            return "ay";
        case Kind::Uuids:
            return "as";
        case Kind::Record:
            return "a{sv}";
    }
    return "";
}

}  // namespace corvane::host
