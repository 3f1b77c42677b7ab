// The fields of the platform's records, once for the table of events and for delivery. A
// visitor gets each field with its name and default:
//   visit.value(name, default, member)          the type follows from the member's
//   visit.text(name, default, member, size)     a string with at least `size` bytes to read
//   visit.bytes(name, default, member, size member)
//   visit.uuids(member, count member, array)    service_uuid and service_count
//   visit.presence()                            whether the callback gets a record or null
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>

#include "platform/host/events/EventTypes.h"

namespace corvane::host {

/// Whether a reader uses the array of UUIDs although it is null.
enum class UuidArray { mayBeNull, isRead };

template <typename Visitor>
constexpr void visitClass(Visitor& visit, bt_class_s& deviceClass) {
    visit.value("major_device_class", "4", deviceClass.major_device_class);
    visit.value("minor_device_class", "1", deviceClass.minor_device_class);
    visit.value("major_service_class_mask", "0x120", deviceClass.major_service_class_mask);
}

template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_adapter_device_discovery_info_s& record) {
    visit.value("remote_address", DEFAULT_ADDRESS, record.remote_address);
    visit.value("remote_name", DEFAULT_NAME, record.remote_name);
    visitClass(visit, record.bt_class);
    visit.value("rssi", "-60", record.rssi);
    visit.value("is_bonded", "false", record.is_bonded);
    visit.uuids(record.service_uuid, record.service_count, UuidArray::isRead);
    visit.value("appearance", "0", record.appearance);
    visit.bytes("manufacturer_data", "0a0b", record.manufacturer_data,
                record.manufacturer_data_len);
}

template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_device_info_s& record) {
    visit.presence();
    visit.value("remote_address", DEFAULT_ADDRESS, record.remote_address);
    visit.value("remote_name", DEFAULT_NAME, record.remote_name);
    visitClass(visit, record.bt_class);
    visit.uuids(record.service_uuid, record.service_count, UuidArray::mayBeNull);
    visit.value("is_bonded", "true", record.is_bonded);
    visit.value("is_connected", "false", record.is_connected);
    visit.value("is_authorized", "false", record.is_authorized);
    visit.bytes("manufacturer_data", "0a0b", record.manufacturer_data,
                record.manufacturer_data_len);
}

template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_device_connection_info_s& record) {
    visit.value("remote_address", DEFAULT_ADDRESS, record.remote_address);
    visit.value("link", "bredr", record.link);
    visit.value("disconn_reason", "unknown", record.disconn_reason);
}

template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_device_sdp_info_s& record) {
    visit.value("remote_address", DEFAULT_ADDRESS, record.remote_address);
    visit.uuids(record.service_uuid, record.service_count, UuidArray::isRead);
}

template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_socket_connection_s& record) {
    visit.value("socket_fd", "7", record.socket_fd);
    visit.value("server_fd", "-1", record.server_fd);
    visit.value("local_role", "client", record.local_role);
    visit.value("remote_address", DEFAULT_ADDRESS, record.remote_address);
    visit.value("service_uuid", "1101", record.service_uuid);
}

template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_socket_received_data_s& record) {
    visit.value("socket_fd", "7", record.socket_fd);
    visit.bytes("data", "48690a", record.data, record.data_size);
}

template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_avrcp_key_event_s& record) {
    visit.value("key", "0x44", record.key);
    visit.value("state", "pressed", record.state);
}

template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_avrcp_remote_features_s& record) {
    visit.value("remote_address", DEFAULT_ADDRESS, record.remote_address);
    visit.value("feature", "1", record.feature);
    visit.value("service_name", "AV Remote Control", record.service_name);
    visit.value("provider_name", "Corvane", record.provider_name);
}

template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_hid_battery_status_info_s& record) {
    visit.value("status", "80", record.status);
    // The platform promises this many bytes, whatever the address.
    visit.text("address", DEFAULT_ADDRESS, record.address, 18);
}

// Callbacks get it by value, so its fields are arguments.
template <typename Visitor>
constexpr void visitFields(Visitor& visit, bt_audio_stream_type_s& record) {
    visit.value("codec", "6", record.codec);
    visit.value("sample_rate", "48000", record.sample_rate);
    visit.value("channels", "2", record.channels);
}

}  // namespace corvane::host
