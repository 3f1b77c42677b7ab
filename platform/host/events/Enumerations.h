// The names by which the values of the platform's enumerations are injected.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <sound_manager_tv.h>

#include "platform/host/events/EventTable.h"

namespace corvane::host {

inline constexpr EnumerationName adapterState[] = {
    {"off", BT_ADAPTER_STATE_OFF},
    {"on", BT_ADAPTER_STATE_ON},
};

inline constexpr EnumerationName authenticationType[] = {
    {"pin-request", BT_AUTHENTICATION_PIN_REQUEST},
    {"pin-display", BT_AUTHENTICATION_PIN_DISPLAY},
    {"passkey-request", BT_AUTHENTICATION_PASSKEY_REQUEST},
    {"passkey-display", BT_AUTHENTICATION_PASSKEY_DISPLAY},
    {"passkey-confirm", BT_AUTHENTICATION_PASSKEY_CONFIRM},
};

inline constexpr EnumerationName discoveryState[] = {
    {"started", BT_ADAPTER_DEVICE_DISCOVERY_STARTED},
    {"finished", BT_ADAPTER_DEVICE_DISCOVERY_FINISHED},
    {"found", BT_ADAPTER_DEVICE_DISCOVERY_FOUND},
};

inline constexpr EnumerationName profileService[] = {
    {"unknown", BT_PROFILE_SERVICE_UNKNOWN},
    {"serial-port", BT_PROFILE_SERVICE_SERIAL_PORT},
    {"a2dp-source", BT_PROFILE_SERVICE_A2DP_SOURCE},
    {"a2dp-sink", BT_PROFILE_SERVICE_A2DP_SINK},
    {"avrcp-target", BT_PROFILE_SERVICE_AVRCP_TARGET},
    {"avrcp-control", BT_PROFILE_SERVICE_AVRCP_CONTROL},
    {"hands-free", BT_PROFILE_SERVICE_HANDS_FREE},
    {"hid", BT_PROFILE_SERVICE_HID},
};

inline constexpr EnumerationName linkType[] = {
    {"bredr", BT_DEVICE_LINK_BREDR},
    {"le", BT_DEVICE_LINK_LE},
};

inline constexpr EnumerationName disconnectReason[] = {
    {"unknown", BT_DEVICE_DISCONNECT_REASON_UNKNOWN},
    {"timeout", BT_DEVICE_DISCONNECT_REASON_TIMEOUT},
    {"local", BT_DEVICE_DISCONNECT_REASON_LOCAL},
    {"remote", BT_DEVICE_DISCONNECT_REASON_REMOTE},
    {"authentication", BT_DEVICE_DISCONNECT_REASON_AUTHENTICATION},
    {"suspend", BT_DEVICE_DISCONNECT_REASON_SUSPEND},
};

inline constexpr EnumerationName audioState[] = {
    {"stopped", BT_A2DP_SOURCE_AUDIO_STATE_STOPPED},
    {"suspended", BT_A2DP_SOURCE_AUDIO_STATE_SUSPENDED},
    {"started", BT_A2DP_SOURCE_AUDIO_STATE_STARTED},
};

inline constexpr EnumerationName audioProfile[] = {
    {"hands-free", BT_AUDIO_PROFILE_HANDS_FREE},
    {"a2dp-source", BT_AUDIO_PROFILE_A2DP_SOURCE},
    {"a2dp-sink", BT_AUDIO_PROFILE_A2DP_SINK},
    {"audio-gateway", BT_AUDIO_PROFILE_AUDIO_GATEWAY},
};

inline constexpr EnumerationName socketState[] = {
    {"connected", BT_SOCKET_CONNECTED},
    {"disconnected", BT_SOCKET_DISCONNECTED},
};

inline constexpr EnumerationName socketRole[] = {
    {"unknown", BT_SOCKET_ROLE_UNKNOWN},
    {"server", BT_SOCKET_ROLE_SERVER},
    {"client", BT_SOCKET_ROLE_CLIENT},
};

inline constexpr EnumerationName keyState[] = {
    {"released", BT_AVRCP_KEY_RELEASED},
    {"pressed", BT_AVRCP_KEY_PRESSED},
};

inline constexpr EnumerationName gripState[] = {
    {"released", BT_HID_SC_GRIP_SENSOR_RELEASED},
    {"held", BT_HID_SC_GRIP_SENSOR_HELD},
};

inline constexpr EnumerationName broadcastState[] = {
    {"stopped", BT_LE_AUDIO_BROADCAST_STOPPED},
    {"configured", BT_LE_AUDIO_BROADCAST_CONFIGURED},
    {"streaming", BT_LE_AUDIO_BROADCAST_STREAMING},
};

inline constexpr EnumerationName outputRoute[] = {
    {"speaker", SOUND_TV_OUTPUT_ROUTE_SPEAKER},   {"bluetooth", SOUND_TV_OUTPUT_ROUTE_BLUETOOTH},
    {"optical", SOUND_TV_OUTPUT_ROUTE_OPTICAL},   {"hdmi", SOUND_TV_OUTPUT_ROUTE_HDMI},
    {"line-out", SOUND_TV_OUTPUT_ROUTE_LINE_OUT},
};

}  // namespace corvane::host
