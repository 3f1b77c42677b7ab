// Writes the arguments of the platform's callbacks as text, with one overload for each type.
// Records are written with the names of their fields.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <sound_manager_tv.h>

#include <string>

namespace eventlog {

struct Passkey {
    const char* digits;
};

/// Append the value. Any thread. A null pointer is written as "none".
void describe(std::string& line, bool value);
void describe(std::string& line, int value);
void describe(std::string& line, unsigned char value);
void describe(std::string& line, unsigned short value);
void describe(std::string& line, const char* text);
void describe(std::string& line, const Passkey& passkey);

void describe(std::string& line, bt_adapter_state_e value);
void describe(std::string& line, bt_authentication_type_info_e value);
void describe(std::string& line, bt_adapter_device_discovery_state_e value);
void describe(std::string& line, bt_profile_service_id_e value);
void describe(std::string& line, bt_device_connection_link_type_e value);
void describe(std::string& line, bt_device_disconnect_reason_e value);
void describe(std::string& line, bt_a2dp_source_audio_state_e value);
void describe(std::string& line, bt_audio_profile_type_e value);
void describe(std::string& line, bt_socket_connection_state_e value);
void describe(std::string& line, bt_socket_role_e value);
void describe(std::string& line, bt_avrcp_key_state_e value);
void describe(std::string& line, bt_hid_sc_grip_sensor_state_e value);
void describe(std::string& line, bt_le_audio_broadcast_state_e value);
void describe(std::string& line, sound_tv_output_route_e value);

void describe(std::string& line, const bt_class_s& record);
void describe(std::string& line, const bt_adapter_device_discovery_info_s* record);
void describe(std::string& line, const bt_device_info_s* record);
void describe(std::string& line, const bt_device_connection_info_s* record);
void describe(std::string& line, const bt_device_sdp_info_s* record);
void describe(std::string& line, const bt_socket_connection_s* record);
void describe(std::string& line, const bt_socket_received_data_s* record);
void describe(std::string& line, const bt_avrcp_key_event_s* record);
void describe(std::string& line, const bt_avrcp_remote_features_s* record);
void describe(std::string& line, const bt_hid_battery_status_info_s* record);
void describe(std::string& line, const bt_audio_stream_type_s& record);

/// Appends " name=value".
template <typename T>
void describeNamed(std::string& line, const char* name, const T& value) {
    line += ' ';
    line += name;
    line += '=';
    describe(line, value);
}

}  // namespace eventlog
