// The platform's records as they are lent to a callback.
#include "platform/host/inject/LentRecords.h"

#include <cstddef>
#include <string>

#include "platform/host/events/ValueText.h"

namespace corvane::host {

namespace {

bt_class_s deviceClass(const Values& values) {
    return {values.get<int>("major_device_class"), values.get<int>("minor_device_class"),
            values.get<int>("major_service_class_mask")};
}

}  // namespace

LentUuids::LentUuids(const Values& values, Array array)
    : m_uuids(values.get<Uuids>("service_uuid")), m_count(m_uuids.count()) {
    const auto* const given = values.find<int>("service_count");
    if (given == nullptr) {
        return;
    }
    if (*given > m_count && (m_count > 0 || array == Array::IsRead)) {
        throw InvalidValue(
            "service_count can't be " + std::to_string(*given) + " with " +
            std::to_string(m_count) + " in service_uuid: beyond them is no memory to read" +
            (array == Array::IsRead ? "" : "; with an empty service_uuid it may have any value"));
    }
    m_count = *given;
}

Lent<bt_adapter_device_discovery_info_s*>::Lent(const Values& values, const char*)
    : m_isFound(values.enumeration<bt_adapter_device_discovery_state_e>("state") ==
                BT_ADAPTER_DEVICE_DISCOVERY_FOUND),
      m_address(m_isFound ? values.get<std::string>("remote_address") : ""),
      m_name(m_isFound ? values.get<std::string>("remote_name") : ""),
      m_uuids(values, LentUuids::Array::IsRead),
      m_manufacturerData(values.get<Bytes>("manufacturer_data")) {
    m_record->remote_address = m_address.get();
    m_record->remote_name = m_name.get();
    if (m_isFound) {
        m_record->bt_class = deviceClass(values);
        m_record->rssi = values.get<int>("rssi");
        m_record->is_bonded = values.get<bool>("is_bonded");
        m_record->service_uuid = m_uuids.get();
        m_record->service_count = m_uuids.count();
        m_record->appearance = values.get<int>("appearance");
        m_record->manufacturer_data_len = m_manufacturerData.count();
        m_record->manufacturer_data = m_manufacturerData.get();
    }
}

Lent<bt_device_info_s*>::Lent(const Values& values, const char*)
    : m_address(values, "remote_address"),
      m_name(values, "remote_name"),
      m_uuids(values, LentUuids::Array::MayBeNull),
      m_manufacturerData(values.get<Bytes>("manufacturer_data")) {
    if (!values.get<bool>("present")) {
        m_record.reset();
        return;
    }
    m_record->remote_address = m_address.get();
    m_record->remote_name = m_name.get();
    m_record->bt_class = deviceClass(values);
    m_record->service_uuid = m_uuids.get();
    m_record->service_count = m_uuids.count();
    m_record->is_bonded = values.get<bool>("is_bonded");
    m_record->is_connected = values.get<bool>("is_connected");
    m_record->is_authorized = values.get<bool>("is_authorized");
    m_record->manufacturer_data_len = m_manufacturerData.count();
    m_record->manufacturer_data = m_manufacturerData.get();
}

Lent<bt_device_connection_info_s*>::Lent(const Values& values, const char*)
    : m_address(values, "remote_address") {
    m_record->remote_address = m_address.get();
    m_record->link = values.enumeration<bt_device_connection_link_type_e>("link");
    m_record->disconn_reason = values.enumeration<bt_device_disconnect_reason_e>("disconn_reason");
}

Lent<bt_device_sdp_info_s*>::Lent(const Values& values, const char*)
    : m_address(values, "remote_address"), m_uuids(values, LentUuids::Array::IsRead) {
    m_record->remote_address = m_address.get();
    m_record->service_uuid = m_uuids.get();
    m_record->service_count = m_uuids.count();
}

Lent<bt_socket_connection_s*>::Lent(const Values& values, const char*)
    : m_address(values, "remote_address"), m_uuid(values, "service_uuid") {
    m_record->socket_fd = values.get<int>("socket_fd");
    m_record->server_fd = values.get<int>("server_fd");
    m_record->local_role = values.enumeration<bt_socket_role_e>("local_role");
    m_record->remote_address = m_address.get();
    m_record->service_uuid = m_uuid.get();
}

Lent<bt_socket_received_data_s*>::Lent(const Values& values, const char*)
    : m_data(values.get<Bytes>("data")) {
    m_record->socket_fd = values.get<int>("socket_fd");
    m_record->data_size = m_data.count();
    m_record->data = m_data.get();
}

Lent<bt_avrcp_key_event_s*>::Lent(const Values& values, const char*) {
    m_record->key = values.enumeration<unsigned char>("key");
    m_record->state = values.enumeration<bt_avrcp_key_state_e>("state");
}

Lent<bt_avrcp_remote_features_s*>::Lent(const Values& values, const char*)
    : m_address(values, "remote_address"),
      m_service(values, "service_name"),
      m_provider(values, "provider_name") {
    m_record->remote_address = m_address.get();
    m_record->feature = values.get<int>("feature");
    m_record->service_name = m_service.get();
    m_record->provider_name = m_provider.get();
}

// 18 bytes of the address are read, whatever its length.
Lent<bt_hid_battery_status_info_s*>::Lent(const Values& values, const char*)
    : m_address(values.get<std::string>("address"), 18) {
    m_record->status = values.enumeration<unsigned char>("status");
    m_record->address = m_address.get();
}

Lent<bt_audio_stream_type_s>::Lent(const Values& values, const char*)
    : m_record{values.get<int>("codec"), values.get<int>("sample_rate"),
               values.get<int>("channels")} {}

}  // namespace corvane::host
