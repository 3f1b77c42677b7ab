// What can be injected. A new event is one array of arguments and one row here, and
// one row in the table of deliveries of the library that owns its callback.
#include "EventTable.h"

#include "Enumerations.h"
#include "Records.h"

#include <algorithm>
#include <cctype>

namespace corvane::host {

namespace {

constexpr Field result{"result", Kind::Integer, "0"};
constexpr Field name{"name", Kind::Text, defaultName};
constexpr Field address{"address", Kind::Text, defaultAddress};

constexpr Field adapterStateChanged[] = {
    result,
    {"state", Kind::Enumeration, "on", adapterState},
};

constexpr Field adapterNameChanged[] = {
    {"name", Kind::Text, "Living room TV"},
};

constexpr Field adapterSspConsentRequest[] = {result, name, address};

constexpr Field adapterAuthenticationRequest[] = {
    result,
    {"type", Kind::Enumeration, "passkey-confirm", authenticationType},
    name,
    address,
    {"key", Kind::Text, "123456"},
};

constexpr Field adapterMaxDeviceConnected[] = {result, address};

constexpr Field adapterDiscoveryStateChanged[] = {
    result,
    {"state", Kind::Enumeration, "found", discoveryState},
    {"info", Kind::Record, "", {}, discoveryInfo},
};

constexpr Field deviceAuthEvent[] = {
    result,
    name,
    address,
    {"service", Kind::Enumeration, "a2dp-source", profileService},
};

constexpr Field deviceBondCreated[] = {
    result,
    {"info", Kind::Record, "", {}, deviceInfo},
};

constexpr Field deviceBondDestroyed[] = {result, address};

constexpr Field deviceConnectionStateChanged[] = {
    {"connected", Kind::Boolean, "true"},
    {"info", Kind::Record, "", {}, connectionInfo},
};

constexpr Field deviceServiceSearched[] = {
    result,
    {"info", Kind::Record, "", {}, sdpInfo},
};

constexpr Event events[] = {
    {"bt-adapter-state-changed", "the adapter was switched on or off", adapterStateChanged},
    {"bt-adapter-name-changed", "the adapter has a new name", adapterNameChanged},
    // "conecnt" is how this event is spelt everywhere.
    {"bt-adapter-ssp-conecnt-request", "a device asks to pair, without a key",
     adapterSspConsentRequest},
    {"bt-adapter-authentication-req", "a device asks to pair, with a PIN or passkey",
     adapterAuthenticationRequest},
    {"bt-adapter-max-device-connected", "no further device can connect", adapterMaxDeviceConnected},
    {"bt-adapter-device-discovery-state-changed",
     "the search for devices started, ended or found one", adapterDiscoveryStateChanged},
    {"bt-device-auth-event", "a device asks to use a service", deviceAuthEvent},
    {"bt-device-bond-created", "pairing has ended; present=false gives no record",
     deviceBondCreated},
    {"bt-device-bond-destroyed", "a device is no longer paired", deviceBondDestroyed},
    {"bt-device-connection-state-changed", "a device has connected or disconnected",
     deviceConnectionStateChanged},
    {"bt-device-service-searched", "the services of a device are known", deviceServiceSearched},
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
    return events;
}

const Event* findEvent(std::string_view wanted) {
    const auto found =
        std::ranges::find_if(events, [&](const Event& event) { return wanted == event.name; });
    return found == std::end(events) ? nullptr : found;
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
            return "i";
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
