// The events with their arguments, as data: the injection server makes its D-Bus methods
// from it, the `corvane` tool its help and its messages. Events.def is the source.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace corvane::host {

enum class Kind {
    Integer,      // D-Bus i
    Byte,         // D-Bus y
    Short,        // D-Bus q: 16 bits without a sign
    Count,        // D-Bus i, or nothing: the size of the array
    Boolean,      // D-Bus b
    Text,         // D-Bus s
    Enumeration,  // D-Bus s: a name, or the value in decimal
    Bytes,        // D-Bus ay
    Uuids,        // D-Bus as
    Record,       // D-Bus a{sv}, keyed by the names of its fields
};

struct EnumerationName {
    const char* name;
    int value;
};

struct Field {
    const char* name;
    Kind kind;
    const char* defaultText = "";                   // as ValueText.h reads it
    std::span<const EnumerationName> allowed = {};  // of Kind::Enumeration
    std::span<const Field> fields = {};             // of Kind::Record
};

struct Event {
    const char* name;
    const char* callback;  // the platform's function that sets the callback
    const char* unset;     // the one that clears it
    const char* meaning;
    std::span<const Field> arguments = {};
};

/// All events, in the order of Events.def. Within one event the names of arguments and of
/// record fields are unique, so a field is named without its record.
std::span<const Event> allEvents();

/// The event of that name, or null.
const Event* findEvent(std::string_view name);

/// The argument or record field of that name, or null.
const Field* findField(const Event& event, std::string_view name);

/// The D-Bus name of an event: BtAdapterStateChanged for bt-adapter-state-changed.
std::string methodName(const Event& event);

/// The D-Bus type of a field.
const char* signatureOf(Kind kind);

}  // namespace corvane::host
