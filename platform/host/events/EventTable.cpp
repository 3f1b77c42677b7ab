// The table of events as data, lookups in it, and the names on D-Bus.
#include "platform/host/events/EventTable.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <type_traits>

#include "platform/host/events/Enumerations.h"
#include "platform/host/events/EventTypes.h"
#include "platform/host/events/Records.h"

namespace corvane::host {

namespace {

template <typename Record>
struct FieldsOf;

/// A visitor of records that lists their fields; also lists the arguments of an event.
class FieldList {
public:
    template <typename T>
    constexpr void add(const char* name, const char* defaultText) {
        if constexpr (std::is_class_v<T>) {
            T record{};
            visitFields(*this, record);
        } else if constexpr (std::is_enum_v<T>) {
            add({name, Kind::Enumeration, defaultText, namesOf<T>});
        } else if constexpr (std::is_class_v<std::remove_pointer_t<T>>) {
            add({name, Kind::Record, "", {}, FieldsOf<std::remove_pointer_t<T>>::LIST.fields()});
        } else {
            add({name, kindOf<T>(), defaultText});
        }
    }

    template <typename T>
    constexpr void value(const char* name, const char* defaultText, const T&) {
        add<T>(name, defaultText);
    }
    constexpr void text(const char* name, const char* defaultText, char*, std::size_t) {
        add({name, Kind::Text, defaultText});
    }
    constexpr void bytes(const char* name, const char* defaultText, char*, int) {
        add({name, Kind::Bytes, defaultText});
    }
    constexpr void uuids(char**, int, UuidArray) {
        add({"service_uuid", Kind::Uuids, "110b,110e"});
        add({"service_count", Kind::Count, "auto"});
    }
    constexpr void presence() { add({"present", Kind::Boolean, "true"}); }

    constexpr std::span<const Field> fields() const { return std::span(m_fields).first(m_size); }

private:
    template <typename T>
    static constexpr Kind kindOf() {
        if constexpr (std::is_same_v<T, bool>) {
            return Kind::Boolean;
        } else if constexpr (std::is_same_v<T, unsigned char>) {
            return Kind::Byte;
        } else if constexpr (std::is_same_v<T, unsigned short>) {
            return Kind::Short;
        } else if constexpr (std::is_same_v<T, int>) {
            return Kind::Integer;
        } else {
            static_assert(std::is_same_v<T, char*> || std::is_same_v<T, const char*>);
            return Kind::Text;
        }
    }

    constexpr void add(const Field& field) { m_fields[m_size++] = field; }

    std::array<Field, 12> m_fields{};
    std::size_t m_size = 0;
};

template <typename Record>
struct FieldsOf {
    static constexpr FieldList LIST = [] {
        FieldList made;
        made.add<Record>("", "");
        return made;
    }();
};

template <auto setFunction>
constexpr FieldList argumentFieldsOf = []<std::size_t... i>(std::index_sequence<i...>) {
    static_assert((... && (argumentsOf<setFunction>[i].name != nullptr)), "too few arguments");
    FieldList list;
    (list.add<ArgumentType<setFunction, i>>(argumentsOf<setFunction>[i].name,
                                            argumentsOf<setFunction>[i].defaultText),
     ...);
    return list;
}
(ArgumentIndices<setFunction>());

constexpr Event EVENTS[] = {
#define EVENT(library, name, setFunction, unsetFunction, meaning, ...) \
    {name, #setFunction, #unsetFunction, meaning, argumentFieldsOf<&setFunction>.fields()},
#include "platform/host/events/Events.def"
#undef EVENT
};

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

std::span<const Event> allEvents() {
    return EVENTS;
}

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
