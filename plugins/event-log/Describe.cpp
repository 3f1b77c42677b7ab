// Writes numbers, texts and enumerations to the log.
#include "plugins/event-log/Describe.h"

#include <cstddef>
#include <span>

#include "plugins/event-log/Private.h"

namespace eventlog {

namespace {

// The platform's enumerations start at 0.
void describeWord(std::string& line, int value, std::span<const char* const> words) {
    if (value >= 0 && static_cast<std::size_t>(value) < words.size()) {
        line += words[static_cast<std::size_t>(value)];
    } else {
        line += std::to_string(value);
    }
}

}  // namespace

void describe(std::string& line, bool value) {
    line += value ? "true" : "false";
}

void describe(std::string& line, int value) {
    line += std::to_string(value);
}

void describe(std::string& line, unsigned char value) {
    line += std::to_string(value);
}

void describe(std::string& line, unsigned short value) {
    line += std::to_string(value);
}

void describe(std::string& line, const char* text) {
    if (text == nullptr) {
        line += "none";
    } else {
        line += '"';
        line += text;
        line += '"';
    }
}

void describe(std::string& line, const Passkey& passkey) {
    const bool hasDigits = passkey.digits != nullptr && *passkey.digits != '\0';
    if (hasDigits && !showsPrivate()) {
        line += "hidden";
    } else {
        describe(line, passkey.digits);
    }
}

void describe(std::string& line, bt_adapter_state_e value) {
    static constexpr const char* words[] = {"off", "on"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_authentication_type_info_e value) {
    static constexpr const char* words[] = {"pin-request", "pin-display", "passkey-request",
                                            "passkey-display", "passkey-confirm"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_adapter_device_discovery_state_e value) {
    static constexpr const char* words[] = {"started", "finished", "found"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_profile_service_id_e value) {
    static constexpr const char* words[] = {"unknown",    "serial-port",  "a2dp-source",
                                            "a2dp-sink",  "avrcp-target", "avrcp-control",
                                            "hands-free", "hid"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_device_connection_link_type_e value) {
    static constexpr const char* words[] = {"bredr", "le"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_device_disconnect_reason_e value) {
    static constexpr const char* words[] = {"unknown", "timeout",        "local",
                                            "remote",  "authentication", "suspend"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_a2dp_source_audio_state_e value) {
    static constexpr const char* words[] = {"stopped", "suspended", "started"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_audio_profile_type_e value) {
    static constexpr const char* words[] = {"hands-free", "a2dp-source", "a2dp-sink",
                                            "audio-gateway"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_socket_connection_state_e value) {
    static constexpr const char* words[] = {"connected", "disconnected"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_socket_role_e value) {
    static constexpr const char* words[] = {"unknown", "server", "client"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_avrcp_key_state_e value) {
    static constexpr const char* words[] = {"released", "pressed"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_hid_sc_grip_sensor_state_e value) {
    static constexpr const char* words[] = {"released", "held"};
    describeWord(line, value, words);
}

void describe(std::string& line, bt_le_audio_broadcast_state_e value) {
    static constexpr const char* words[] = {"stopped", "configured", "streaming"};
    describeWord(line, value, words);
}

void describe(std::string& line, sound_tv_output_route_e value) {
    static constexpr const char* words[] = {"speaker", "bluetooth", "optical", "hdmi", "line-out"};
    describeWord(line, value, words);
}

}  // namespace eventlog
