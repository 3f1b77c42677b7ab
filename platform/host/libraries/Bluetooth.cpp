// The platform's Bluetooth on the host: one callback for each kind of event. The
// profiles and the audio stack need no set-up here; what feeds the callbacks starts
// with the product.
#include <bluetooth.h>

#include "platform/host/slots/CallbackSlot.h"

PLATFORM_API int bt_audio_initialize() {
    return 0;
}
PLATFORM_API int bt_audio_deinitialize() {
    return 0;
}

CALLBACK_PAIR(bt_hid_host_initialize, bt_hid_host_deinitialize)
CALLBACK_PAIR(bt_avrcp_control_initialize, bt_avrcp_control_deinitialize)
CALLBACK_PAIR(bt_avrcp_target_initialize, bt_avrcp_target_deinitialize)

CALLBACK_PAIR(bt_adapter_set_state_changed_cb, bt_adapter_unset_state_changed_cb)
CALLBACK_PAIR(bt_adapter_set_name_changed_cb, bt_adapter_unset_name_changed_cb)
CALLBACK_PAIR(bt_adapter_set_ssp_consent_request_cb, bt_adapter_unset_ssp_consent_request_cb)
CALLBACK_PAIR(bt_adapter_set_authentication_req_cb, bt_adapter_unset_authentication_req_cb)
CALLBACK_PAIR(bt_adapter_set_max_device_connected_cb, bt_adapter_unset_max_device_connected_cb)
CALLBACK_PAIR(bt_adapter_set_device_discovery_state_changed_cb,
              bt_adapter_unset_device_discovery_state_changed_cb)
CALLBACK_PAIR(bt_device_set_auth_event_cb, bt_device_unset_auth_event_cb)
CALLBACK_PAIR(bt_device_set_bond_created_cb, bt_device_unset_bond_created_cb)
CALLBACK_PAIR(bt_device_set_bond_destroyed_cb, bt_device_unset_bond_destroyed_cb)
CALLBACK_PAIR(bt_device_set_connection_state_changed_cb,
              bt_device_unset_connection_state_changed_cb)
CALLBACK_PAIR(bt_device_set_service_searched_cb, bt_device_unset_service_searched_cb)
CALLBACK_PAIR(bt_ag_set_sco_state_changed_cb, bt_ag_unset_sco_state_changed_cb)
CALLBACK_PAIR(bt_ag_set_speaker_gain_changed_cb, bt_ag_unset_speaker_gain_changed_cb)
CALLBACK_PAIR(bt_audio_set_audio_state_changed_cb, bt_audio_unset_audio_state_changed_cb)
CALLBACK_PAIR(bt_audio_set_connection_state_changed_cb, bt_audio_unset_connection_state_changed_cb)
CALLBACK_PAIR(bt_audio_set_slc_state_changed_cb, bt_audio_unset_slc_state_changed_cb)
CALLBACK_PAIR(bt_gatt_set_connection_state_changed_cb, bt_gatt_unset_connection_state_changed_cb)
CALLBACK_PAIR(bt_socket_set_connection_state_changed_cb,
              bt_socket_unset_connection_state_changed_cb)
CALLBACK_PAIR(bt_socket_set_data_received_cb, bt_socket_unset_data_received_cb)
