// The names by which the values of the platform's enumerations are injected.
#pragma once

#include "EventTable.h"

#include <bluetooth.h>

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

}  // namespace corvane::host
