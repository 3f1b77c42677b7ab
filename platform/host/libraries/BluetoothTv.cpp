// TV extension of the platform's Bluetooth on the host: the callbacks of its kinds
// of event, and the start of everything that feeds callbacks.
#include <bluetooth_tv.h>

#include "platform/host/libraries/Product.h"
#include "platform/host/slots/CallbackSlot.h"

PLATFORM_API int bt_product_init() {
    return corvane::host::startProduct();
}
PLATFORM_API int bt_product_deinit() {
    return corvane::host::stopProduct();
}

CALLBACK_PAIR(bt_avrcp_set_absolute_volume_changed_cb, bt_avrcp_unset_absolute_volume_changed_cb)
CALLBACK_PAIR(bt_avrcp_set_interim_volume_notify_cb, bt_avrcp_unset_interim_volume_notify_cb)
CALLBACK_PAIR(bt_avrcp_set_key_event_received_cb, bt_avrcp_unset_key_event_received_cb)
CALLBACK_PAIR(bt_avrcp_set_mute_state_changed_with_address_cb,
              bt_avrcp_unset_mute_state_changed_with_address_cb)
CALLBACK_PAIR(bt_avrcp_set_remote_features_cb, bt_avrcp_unset_remote_features_cb)
CALLBACK_PAIR(bt_avrcp_set_volume_changed_cb, bt_avrcp_unset_volume_changed_cb)
CALLBACK_PAIR(bt_avrcp_set_volume_changed_with_address_cb,
              bt_avrcp_unset_volume_changed_with_address_cb)
CALLBACK_PAIR(bt_avrcp_set_volume_notify_cb, bt_avrcp_unset_volume_notify_cb)
CALLBACK_PAIR(bt_hid_set_brek_switch_charging_status_received_cb,
              bt_hid_unset_brek_switch_charging_status_received_cb)
CALLBACK_PAIR(bt_hid_set_brek_switch_connection_state_changed_cb,
              bt_hid_unset_brek_switch_connection_state_changed_cb)
CALLBACK_PAIR(bt_hid_set_brek_switch_firmware_update_state_changed_cb,
              bt_hid_unset_brek_switch_firmware_update_state_changed_cb)
CALLBACK_PAIR(bt_hid_set_battery_status_received_cb, bt_hid_unset_battery_status_received_cb)
CALLBACK_PAIR(bt_hid_set_smart_rc_charging_status_received_cb,
              bt_hid_unset_smart_rc_charging_status_received_cb)
CALLBACK_PAIR(bt_hid_set_smart_rc_connection_cb, bt_hid_unset_smart_rc_connection_cb)
CALLBACK_PAIR(bt_hid_set_smart_rc_fw_update_status_cb, bt_hid_unset_smart_rc_fw_update_status_cb)
CALLBACK_PAIR(bt_hid_set_smart_rc_grip_sensor_detected_cb,
              bt_hid_unset_smart_rc_grip_sensor_detected_cb)
CALLBACK_PAIR(bt_hid_set_smart_rc_grip_sensor_state_changed_cb,
              bt_hid_unset_smart_rc_grip_sensor_state_changed_cb)
CALLBACK_PAIR(bt_le_audio_broadcast_set_state_changed_cb,
              bt_le_audio_broadcast_unset_state_changed_cb)
