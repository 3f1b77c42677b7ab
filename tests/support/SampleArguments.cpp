#include "tests/support/SampleArguments.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

SampleBuffers::~SampleBuffers() {
    for (auto& text : m_texts) {
        std::fill(text->begin(), text->end() - 1, '#');
    }
    for (auto& array : m_arrays) {
        std::fill(array->begin(), array->end(), nullptr);
    }
}

char* SampleBuffers::text(const std::string& content) {
    m_texts.push_back(std::make_unique<std::vector<char>>(content.begin(), content.end()));
    m_texts.back()->push_back('\0');
    return m_texts.back()->data();
}

char** SampleBuffers::texts(const std::vector<std::string>& contents) {
    auto array = std::make_unique<std::vector<char*>>();
    for (const std::string& content : contents) {
        array->push_back(text(content));
    }
    m_arrays.push_back(std::move(array));
    return m_arrays.back()->data();
}

namespace {

const std::string DATA("\x01\x00\xffz", 4);

std::string joined(std::initializer_list<std::string> parts) {
    std::string all = "{";
    for (const std::string& part : parts) {
        all += part + ";";
    }
    return all + "}";
}

std::string strings(char** texts, int count) {
    std::string all = std::to_string(count) + ":";
    for (int i = 0; texts != nullptr && i < count; ++i) {
        all += describe(texts[i]) + ",";
    }
    return texts == nullptr ? all + "null" : all;
}

std::string bytes(const char* data, int length) {
    return std::to_string(length) + ":" +
           (data == nullptr ? "null" : std::string(data, static_cast<std::size_t>(length)));
}

std::string classOf(const bt_class_s& value) {
    return joined({describe(value.major_device_class), describe(value.minor_device_class),
                   describe(value.major_service_class_mask)});
}

}  // namespace

template <>
bt_adapter_device_discovery_info_s* sample(SampleBuffers& buffers, int) {
    auto* record = buffers.record<bt_adapter_device_discovery_info_s>();
    *record = {buffers.text("AA:BB:CC:DD:EE:01"),
               buffers.text("found"),
               {1, 2, 3},
               -40,
               true,
               buffers.texts({"1101", "110b"}),
               2,
               5,
               static_cast<int>(DATA.size()),
               buffers.text(DATA)};
    return record;
}

template <>
bt_device_info_s* sample(SampleBuffers& buffers, int) {
    auto* record = buffers.record<bt_device_info_s>();
    *record = {buffers.text("AA:BB:CC:DD:EE:02"),
               buffers.text("headset"),
               {4, 5, 6},
               buffers.texts({"110a", "110c", "110e"}),
               3,
               true,
               false,
               true,
               static_cast<int>(DATA.size()),
               buffers.text(DATA)};
    return record;
}

template <>
bt_device_connection_info_s* sample(SampleBuffers& buffers, int) {
    auto* record = buffers.record<bt_device_connection_info_s>();
    *record = {buffers.text("AA:BB:CC:DD:EE:03"), BT_DEVICE_LINK_LE,
               BT_DEVICE_DISCONNECT_REASON_REMOTE};
    return record;
}

template <>
bt_device_sdp_info_s* sample(SampleBuffers& buffers, int) {
    auto* record = buffers.record<bt_device_sdp_info_s>();
    *record = {buffers.text("AA:BB:CC:DD:EE:04"), buffers.texts({"1101", "1124"}), 2};
    return record;
}

template <>
bt_avrcp_key_event_s* sample(SampleBuffers& buffers, int) {
    auto* record = buffers.record<bt_avrcp_key_event_s>();
    *record = {0x44, BT_AVRCP_KEY_PRESSED};
    return record;
}

template <>
bt_avrcp_remote_features_s* sample(SampleBuffers& buffers, int) {
    auto* record = buffers.record<bt_avrcp_remote_features_s>();
    *record = {buffers.text("AA:BB:CC:DD:EE:05"), 9, buffers.text("service"),
               buffers.text("provider")};
    return record;
}

template <>
bt_hid_battery_status_info_s* sample(SampleBuffers& buffers, int) {
    auto* record = buffers.record<bt_hid_battery_status_info_s>();
    *record = {200, buffers.text("AA:BB:CC:DD:EE:06")};
    return record;
}

template <>
bt_socket_connection_s* sample(SampleBuffers& buffers, int) {
    auto* record = buffers.record<bt_socket_connection_s>();
    *record = {11, 12, BT_SOCKET_ROLE_CLIENT, buffers.text("AA:BB:CC:DD:EE:07"),
               buffers.text("1101")};
    return record;
}

template <>
bt_socket_received_data_s* sample(SampleBuffers& buffers, int) {
    auto* record = buffers.record<bt_socket_received_data_s>();
    *record = {13, static_cast<int>(DATA.size()), buffers.text(DATA)};
    return record;
}

template <>
bt_audio_stream_type_s sample(SampleBuffers&, int) {
    return {6, 48000, 2};
}

std::string describe(const char* text) {
    return text == nullptr ? "null" : '"' + std::string(text) + '"';
}

std::string describe(char* text) {
    return describe(static_cast<const char*>(text));
}

std::string describe(const bt_adapter_device_discovery_info_s* record) {
    return joined({describe(record->remote_address), describe(record->remote_name),
                   classOf(record->bt_class), describe(record->rssi), describe(record->is_bonded),
                   strings(record->service_uuid, record->service_count),
                   describe(record->appearance),
                   bytes(record->manufacturer_data, record->manufacturer_data_len)});
}

std::string describe(const bt_device_info_s* record) {
    if (record == nullptr) {
        return "null";
    }
    return joined({describe(record->remote_address), describe(record->remote_name),
                   classOf(record->bt_class), strings(record->service_uuid, record->service_count),
                   describe(record->is_bonded), describe(record->is_connected),
                   describe(record->is_authorized),
                   bytes(record->manufacturer_data, record->manufacturer_data_len)});
}

std::string describe(const bt_device_connection_info_s* record) {
    return joined({describe(record->remote_address), describe(record->link),
                   describe(record->disconn_reason)});
}

std::string describe(const bt_device_sdp_info_s* record) {
    return joined(
        {describe(record->remote_address), strings(record->service_uuid, record->service_count)});
}

std::string describe(const bt_avrcp_key_event_s* record) {
    return joined({describe(record->key), describe(record->state)});
}

std::string describe(const bt_avrcp_remote_features_s* record) {
    return joined({describe(record->remote_address), describe(record->feature),
                   describe(record->service_name), describe(record->provider_name)});
}

std::string describe(const bt_hid_battery_status_info_s* record) {
    return joined({describe(record->status), describe(record->address)});
}

std::string describe(const bt_socket_connection_s* record) {
    return joined({describe(record->socket_fd), describe(record->server_fd),
                   describe(record->local_role), describe(record->remote_address),
                   describe(record->service_uuid)});
}

std::string describe(const bt_socket_received_data_s* record) {
    return joined({describe(record->socket_fd), bytes(record->data, record->data_size)});
}

std::string describe(bt_audio_stream_type_s record) {
    return joined(
        {describe(record.codec), describe(record.sample_rate), describe(record.channels)});
}
