// The fields of the platform's records, as they are injected. The counts in a record
// follow from the arrays; that of UUIDs may be given otherwise.
#pragma once

#include "platform/host/events/Enumerations.h"
#include "platform/host/events/EventTable.h"

namespace corvane::host {

inline constexpr const char* defaultAddress = "AA:BB:CC:DD:EE:FF";
inline constexpr const char* defaultName = "Headset";
inline constexpr const char* defaultUuids = "110b,110e";

inline constexpr Field discoveryInfo[] = {
    {"remote_address", Kind::Text, defaultAddress},
    {"remote_name", Kind::Text, defaultName},
    {"major_device_class", Kind::Integer, "4"},
    {"minor_device_class", Kind::Integer, "1"},
    {"major_service_class_mask", Kind::Integer, "0x120"},
    {"rssi", Kind::Integer, "-60"},
    {"is_bonded", Kind::Boolean, "false"},
    {"service_uuid", Kind::Uuids, defaultUuids},
    {"service_count", Kind::Count, "auto"},
    {"appearance", Kind::Integer, "0"},
    {"manufacturer_data", Kind::Bytes, "0a0b"},
};

// "present" is no field of the record: without it the callback gets a null pointer.
inline constexpr Field deviceInfo[] = {
    {"present", Kind::Boolean, "true"},
    {"remote_address", Kind::Text, defaultAddress},
    {"remote_name", Kind::Text, defaultName},
    {"major_device_class", Kind::Integer, "4"},
    {"minor_device_class", Kind::Integer, "1"},
    {"major_service_class_mask", Kind::Integer, "0x120"},
    {"service_uuid", Kind::Uuids, defaultUuids},
    {"service_count", Kind::Count, "auto"},
    {"is_bonded", Kind::Boolean, "true"},
    {"is_connected", Kind::Boolean, "false"},
    {"is_authorized", Kind::Boolean, "false"},
    {"manufacturer_data", Kind::Bytes, "0a0b"},
};

inline constexpr Field connectionInfo[] = {
    {"remote_address", Kind::Text, defaultAddress},
    {"link", Kind::Enumeration, "bredr", linkType},
    {"disconn_reason", Kind::Enumeration, "unknown", disconnectReason},
};

inline constexpr Field sdpInfo[] = {
    {"remote_address", Kind::Text, defaultAddress},
    {"service_uuid", Kind::Uuids, defaultUuids},
    {"service_count", Kind::Count, "auto"},
};

inline constexpr Field socketConnection[] = {
    {"socket_fd", Kind::Integer, "7"},
    {"server_fd", Kind::Integer, "-1"},
    {"local_role", Kind::Enumeration, "client", socketRole},
    {"remote_address", Kind::Text, defaultAddress},
    {"service_uuid", Kind::Text, "1101"},
};

inline constexpr Field socketData[] = {
    {"socket_fd", Kind::Integer, "7"},
    {"data", Kind::Bytes, "48690a"},
};

inline constexpr Field keyEvent[] = {
    {"key", Kind::Byte, "0x44"},
    {"state", Kind::Enumeration, "pressed", keyState},
};

inline constexpr Field remoteFeatures[] = {
    {"remote_address", Kind::Text, defaultAddress},
    {"feature", Kind::Integer, "1"},
    {"service_name", Kind::Text, "AV Remote Control"},
    {"provider_name", Kind::Text, "Corvane"},
};

inline constexpr Field batteryStatus[] = {
    {"status", Kind::Byte, "80"},
    {"address", Kind::Text, defaultAddress},
};

}  // namespace corvane::host
