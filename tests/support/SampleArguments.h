// Sample arguments of events, in buffers that are overwritten and freed when the delivery ends, as
// on a platform. Every value can be converted to text, to compare the received with the sent ones.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

/// Owns the buffers. Overwrites them on destruction, so that a test detects a pointer that a
/// receiver has kept.
class SampleBuffers {
public:
    SampleBuffers() = default;
    ~SampleBuffers();
    SampleBuffers(const SampleBuffers&) = delete;
    SampleBuffers& operator=(const SampleBuffers&) = delete;

    char* text(const std::string& content);
    char** texts(const std::vector<std::string>& contents);
    template <typename Record>
    Record* record() {
        auto owned = std::make_shared<Record>();
        m_records.push_back(owned);
        return owned.get();
    }

private:
    std::vector<std::unique_ptr<std::vector<char>>> m_texts;
    std::vector<std::unique_ptr<std::vector<char*>>> m_arrays;
    std::vector<std::shared_ptr<void>> m_records;
};

/// Returns the argument at `position` of an event. All fields are set.
template <typename T>
T sample(SampleBuffers& buffers, int position) {
    if constexpr (std::is_same_v<T, char*> || std::is_same_v<T, const char*>) {
        return buffers.text("text of argument " + std::to_string(position));
    } else if constexpr (std::is_same_v<T, bool> || std::is_enum_v<T>) {
        return static_cast<T>(1);
    } else {
        return static_cast<T>(position + 1);
    }
}
template <>
bt_adapter_device_discovery_info_s* sample(SampleBuffers&, int);
template <>
bt_device_info_s* sample(SampleBuffers&, int);
template <>
bt_device_connection_info_s* sample(SampleBuffers&, int);
template <>
bt_device_sdp_info_s* sample(SampleBuffers&, int);
template <>
bt_avrcp_key_event_s* sample(SampleBuffers&, int);
template <>
bt_avrcp_remote_features_s* sample(SampleBuffers&, int);
template <>
bt_hid_battery_status_info_s* sample(SampleBuffers&, int);
template <>
bt_socket_connection_s* sample(SampleBuffers&, int);
template <>
bt_socket_received_data_s* sample(SampleBuffers&, int);
template <>
bt_audio_stream_type_s sample(SampleBuffers&, int);

/// Return a value as text, with all fields of a record.
template <typename T>
requires(!std::is_pointer_v<T>) std::string describe(T value) {
    return std::to_string(static_cast<long>(value));
}
std::string describe(const char* text);
std::string describe(char* text);
std::string describe(const bt_adapter_device_discovery_info_s* record);
std::string describe(const bt_device_info_s* record);
std::string describe(const bt_device_connection_info_s* record);
std::string describe(const bt_device_sdp_info_s* record);
std::string describe(const bt_avrcp_key_event_s* record);
std::string describe(const bt_avrcp_remote_features_s* record);
std::string describe(const bt_hid_battery_status_info_s* record);
std::string describe(const bt_socket_connection_s* record);
std::string describe(const bt_socket_received_data_s* record);
std::string describe(bt_audio_stream_type_s record);

/// Return what a plugin must receive for a sent value, as text.
template <typename T>
std::string describeExpected(T value) {
    return describe(value);
}
inline std::string describeExpected(bt_adapter_device_discovery_info_s* sent) {
    bt_adapter_device_discovery_info_s expected = *sent;
    expected.bt_class.major_service_class_mask = sent->bt_class.major_device_class;
    expected.appearance = 0;
    return describe(&expected);
}
