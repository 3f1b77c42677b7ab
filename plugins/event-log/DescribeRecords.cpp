// Writes the platform's records as {field=value field=value}.
#include <cstddef>

#include "plugins/event-log/Describe.h"
#include "plugins/event-log/Private.h"

namespace eventlog {

namespace {

struct Uuids {
    char** uuids;
    int count;
};

struct Bytes {
    const char* data;
    int count;
};

struct Payload {
    Bytes bytes;
};

}  // namespace

static void describe(std::string& line, const Uuids& list) {
    line += '[';
    for (int i = 0; i < list.count && list.uuids != nullptr; ++i) {
        line += i == 0 ? "" : ",";
        line += list.uuids[i] == nullptr ? "none" : list.uuids[i];
    }
    line += ']';
}

static void describe(std::string& line, const Bytes& bytes) {
    constexpr const char* digits = "0123456789abcdef";
    line += '[';
    for (int i = 0; i < bytes.count && bytes.data != nullptr; ++i) {
        const auto byte = static_cast<unsigned char>(bytes.data[i]);
        line += digits[byte >> 4];
        line += digits[byte & 15];
    }
    line += ']';
}

static void describe(std::string& line, const Payload& payload) {
    if (payload.bytes.count > 0 && !showsPrivate()) {
        line += '[' + std::to_string(payload.bytes.count) + " bytes hidden]";
    } else {
        describe(line, payload.bytes);
    }
}

namespace {

// Writes a record, given as pairs of a name and a value.
void describeFields(std::string&) {}

template <typename T, typename... Rest>
void describeFields(std::string& line, const char* name, const T& value, const Rest&... rest) {
    line += name;
    line += '=';
    describe(line, value);
    line += sizeof...(rest) == 0 ? "" : " ";
    describeFields(line, rest...);
}

template <typename... Fields>
void describeRecord(std::string& line, const Fields&... fields) {
    line += '{';
    describeFields(line, fields...);
    line += '}';
}

}  // namespace

void describe(std::string& line, const bt_class_s& record) {
    describeRecord(line, "major_device_class", record.major_device_class, "minor_device_class",
                   record.minor_device_class, "major_service_class_mask",
                   record.major_service_class_mask);
}

void describe(std::string& line, const bt_adapter_device_discovery_info_s* record) {
    describeRecord(line, "remote_address", record->remote_address, "remote_name",
                   record->remote_name, "bt_class", record->bt_class, "rssi", record->rssi,
                   "is_bonded", record->is_bonded, "service_uuid",
                   Uuids{record->service_uuid, record->service_count}, "appearance",
                   record->appearance, "manufacturer_data",
                   Bytes{record->manufacturer_data, record->manufacturer_data_len});
}

// The only record whose pointer may be null.
void describe(std::string& line, const bt_device_info_s* record) {
    if (record == nullptr) {
        line += "none";
        return;
    }
    describeRecord(line, "remote_address", record->remote_address, "remote_name",
                   record->remote_name, "bt_class", record->bt_class, "service_uuid",
                   Uuids{record->service_uuid, record->service_count}, "is_bonded",
                   record->is_bonded, "is_connected", record->is_connected, "is_authorized",
                   record->is_authorized, "manufacturer_data",
                   Bytes{record->manufacturer_data, record->manufacturer_data_len});
}

void describe(std::string& line, const bt_device_connection_info_s* record) {
    describeRecord(line, "remote_address", record->remote_address, "link", record->link,
                   "disconn_reason", record->disconn_reason);
}

void describe(std::string& line, const bt_device_sdp_info_s* record) {
    describeRecord(line, "remote_address", record->remote_address, "service_uuid",
                   Uuids{record->service_uuid, record->service_count});
}

void describe(std::string& line, const bt_socket_connection_s* record) {
    describeRecord(line, "socket_fd", record->socket_fd, "server_fd", record->server_fd,
                   "local_role", record->local_role, "remote_address", record->remote_address,
                   "service_uuid", record->service_uuid);
}

void describe(std::string& line, const bt_socket_received_data_s* record) {
    describeRecord(line, "socket_fd", record->socket_fd, "data",
                   Payload{{record->data, record->data_size}});
}

void describe(std::string& line, const bt_avrcp_key_event_s* record) {
    describeRecord(line, "key", record->key, "state", record->state);
}

void describe(std::string& line, const bt_avrcp_remote_features_s* record) {
    describeRecord(line, "remote_address", record->remote_address, "feature", record->feature,
                   "service_name", record->service_name, "provider_name", record->provider_name);
}

void describe(std::string& line, const bt_hid_battery_status_info_s* record) {
    describeRecord(line, "status", record->status, "address", record->address);
}

void describe(std::string& line, const bt_audio_stream_type_s& record) {
    describeRecord(line, "codec", record.codec, "sample_rate", record.sample_rate, "channels",
                   record.channels);
}

}  // namespace eventlog
