// The names by which the values of the platform's enumerations are injected. The values of
// each enumeration count from 0.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <sound_manager_tv.h>

#include <array>
#include <cstddef>

#include "platform/host/events/EventTable.h"

namespace corvane::host {

/// The names of 0 to `last`, in order.
template <auto last, typename... Names>
consteval auto namesUpTo(Names... names) {
    static_assert(sizeof...(Names) == static_cast<std::size_t>(last) + 1);
    int value = 0;
    return std::array{EnumerationName{names, value++}...};
}

template <typename Enumeration>
inline constexpr std::array<EnumerationName, 0> namesOf{};

template <>
inline constexpr auto namesOf<bt_adapter_state_e> = namesUpTo<BT_ADAPTER_STATE_ON>("off", "on");
template <>
inline constexpr auto namesOf<bt_authentication_type_info_e> =
    namesUpTo<BT_AUTHENTICATION_PASSKEY_CONFIRM>("pin-request", "pin-display", "passkey-request",
                                                 "passkey-display", "passkey-confirm");
template <>
inline constexpr auto namesOf<bt_adapter_device_discovery_state_e> =
    namesUpTo<BT_ADAPTER_DEVICE_DISCOVERY_FOUND>("started", "finished", "found");
template <>
inline constexpr auto namesOf<bt_profile_service_id_e> =
    namesUpTo<BT_PROFILE_SERVICE_HID>("unknown", "serial-port", "a2dp-source", "a2dp-sink",
                                      "avrcp-target", "avrcp-control", "hands-free", "hid");
template <>
inline constexpr auto namesOf<bt_device_connection_link_type_e> =
    namesUpTo<BT_DEVICE_LINK_LE>("bredr", "le");
template <>
inline constexpr auto namesOf<bt_device_disconnect_reason_e> =
    namesUpTo<BT_DEVICE_DISCONNECT_REASON_SUSPEND>("unknown", "timeout", "local", "remote",
                                                   "authentication", "suspend");
template <>
inline constexpr auto namesOf<bt_a2dp_source_audio_state_e> =
    namesUpTo<BT_A2DP_SOURCE_AUDIO_STATE_STARTED>("stopped", "suspended", "started");
template <>
inline constexpr auto namesOf<bt_audio_profile_type_e> = namesUpTo<BT_AUDIO_PROFILE_AUDIO_GATEWAY>(
    "hands-free", "a2dp-source", "a2dp-sink", "audio-gateway");
template <>
inline constexpr auto namesOf<bt_socket_connection_state_e> =
    namesUpTo<BT_SOCKET_DISCONNECTED>("connected", "disconnected");
template <>
inline constexpr auto namesOf<bt_socket_role_e> = namesUpTo<BT_SOCKET_ROLE_CLIENT>("unknown",
                                                                                   "server",
                                                                                   "client");
template <>
inline constexpr auto namesOf<bt_avrcp_key_state_e> = namesUpTo<BT_AVRCP_KEY_PRESSED>("released",
                                                                                      "pressed");
template <>
inline constexpr auto namesOf<bt_hid_sc_grip_sensor_state_e> =
    namesUpTo<BT_HID_SC_GRIP_SENSOR_HELD>("released", "held");
template <>
inline constexpr auto namesOf<bt_le_audio_broadcast_state_e> =
    namesUpTo<BT_LE_AUDIO_BROADCAST_STREAMING>("stopped", "configured", "streaming");
template <>
inline constexpr auto namesOf<sound_tv_output_route_e> = namesUpTo<SOUND_TV_OUTPUT_ROUTE_LINE_OUT>(
    "speaker", "bluetooth", "optical", "hdmi", "line-out");

}  // namespace corvane::host
