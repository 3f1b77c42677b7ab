/*
 * TV extension of the platform's Bluetooth: product set-up, remote-control volume and
 * keys, the TV's HID accessories and LE audio broadcast. The rules in bluetooth.h apply
 * here, too.
 */
#ifndef PLATFORM_BLUETOOTH_TV_H
#define PLATFORM_BLUETOOTH_TV_H

#include <bluetooth.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Product ---- */

int bt_product_init(void);
int bt_product_deinit(void);

/* ---- AVRCP volume, keys and features ---- */

/* Volumes are those of AVRCP: 0 to 127. */
typedef void (*bt_avrcp_absolute_volume_changed_cb)(const char* address, unsigned short volume,
                                                    void* user_data);
int bt_avrcp_set_absolute_volume_changed_cb(bt_avrcp_absolute_volume_changed_cb callback,
                                            void* user_data);
int bt_avrcp_unset_absolute_volume_changed_cb(void);

typedef void (*bt_avrcp_interim_volume_notify_cb)(const char* address, unsigned short volume,
                                                  void* user_data);
int bt_avrcp_set_interim_volume_notify_cb(bt_avrcp_interim_volume_notify_cb callback,
                                          void* user_data);
int bt_avrcp_unset_interim_volume_notify_cb(void);

typedef enum bt_avrcp_key_state_e {
    BT_AVRCP_KEY_RELEASED = 0,
    BT_AVRCP_KEY_PRESSED = 1,
} bt_avrcp_key_state_e;

typedef struct bt_avrcp_key_event_s {
    unsigned char key; /* AV/C operation id, 0x44 is PLAY */
    bt_avrcp_key_state_e state;
} bt_avrcp_key_event_s;

typedef void (*bt_avrcp_key_event_received_cb)(bt_avrcp_key_event_s* event, void* user_data);
int bt_avrcp_set_key_event_received_cb(bt_avrcp_key_event_received_cb callback, void* user_data);
int bt_avrcp_unset_key_event_received_cb(void);

typedef void (*bt_avrcp_mute_state_changed_with_address_cb)(const char* address, bool muted,
                                                            void* user_data);
int bt_avrcp_set_mute_state_changed_with_address_cb(
    bt_avrcp_mute_state_changed_with_address_cb callback, void* user_data);
int bt_avrcp_unset_mute_state_changed_with_address_cb(void);

typedef struct bt_avrcp_remote_features_s {
    char* remote_address;
    int feature; /* the remote's supported-features bits */
    char* service_name;
    char* provider_name;
} bt_avrcp_remote_features_s;

typedef void (*bt_avrcp_remote_features_cb)(bt_avrcp_remote_features_s* features, void* user_data);
int bt_avrcp_set_remote_features_cb(bt_avrcp_remote_features_cb callback, void* user_data);
int bt_avrcp_unset_remote_features_cb(void);

typedef void (*bt_avrcp_volume_changed_cb)(unsigned short volume, void* user_data);
int bt_avrcp_set_volume_changed_cb(bt_avrcp_volume_changed_cb callback, void* user_data);
int bt_avrcp_unset_volume_changed_cb(void);

typedef void (*bt_avrcp_volume_changed_with_address_cb)(const char* address, unsigned short volume,
                                                        void* user_data);
int bt_avrcp_set_volume_changed_with_address_cb(bt_avrcp_volume_changed_with_address_cb callback,
                                                void* user_data);
int bt_avrcp_unset_volume_changed_with_address_cb(void);

typedef void (*bt_avrcp_volume_notified_cb)(void* user_data);
int bt_avrcp_set_volume_notify_cb(bt_avrcp_volume_notified_cb callback, void* user_data);
int bt_avrcp_unset_volume_notify_cb(void);

/* ---- HID accessories ---- */

/* `level` is in percent; `charging` is 1 while the charger is connected, else 0. */
typedef void (*bt_hid_notify_battery_charging_status_received_cb)(unsigned char level,
                                                                  unsigned char charging,
                                                                  void* user_data);
int bt_hid_set_brek_switch_charging_status_received_cb(
    bt_hid_notify_battery_charging_status_received_cb callback, void* user_data);
int bt_hid_unset_brek_switch_charging_status_received_cb(void);

/* `info` and every pointer in it may be null. */
typedef void (*bt_hid_brek_switch_connection_state_changed_cb)(bool connected,
                                                               bt_device_info_s* info,
                                                               void* user_data);
int bt_hid_set_brek_switch_connection_state_changed_cb(
    bt_hid_brek_switch_connection_state_changed_cb callback, void* user_data);
int bt_hid_unset_brek_switch_connection_state_changed_cb(void);

typedef void (*bt_hid_brek_switch_firmware_update_state_changed_cb)(int state, void* user_data);
int bt_hid_set_brek_switch_firmware_update_state_changed_cb(
    bt_hid_brek_switch_firmware_update_state_changed_cb callback, void* user_data);
int bt_hid_unset_brek_switch_firmware_update_state_changed_cb(void);

/* At least 18 bytes can be read at `address`. */
typedef struct bt_hid_battery_status_info_s {
    unsigned char status;
    char* address;
} bt_hid_battery_status_info_s;

typedef void (*bt_hid_notify_battery_status_received_cb)(bt_hid_battery_status_info_s* status,
                                                         void* user_data);
int bt_hid_set_battery_status_received_cb(bt_hid_notify_battery_status_received_cb callback,
                                          void* user_data);
int bt_hid_unset_battery_status_received_cb(void);

typedef void (*bt_hid_notify_smart_rc_charging_status_received_cb)(unsigned char level,
                                                                   unsigned char charging,
                                                                   void* user_data);
int bt_hid_set_smart_rc_charging_status_received_cb(
    bt_hid_notify_smart_rc_charging_status_received_cb callback, void* user_data);
int bt_hid_unset_smart_rc_charging_status_received_cb(void);

/* `info` and every pointer in it may be null. */
typedef void (*bt_hid_notify_smart_rc_connection_cb)(bool connected, bt_device_info_s* info,
                                                     void* user_data);
int bt_hid_set_smart_rc_connection_cb(bt_hid_notify_smart_rc_connection_cb callback,
                                      void* user_data);
int bt_hid_unset_smart_rc_connection_cb(void);

/* `progress` is in percent. */
typedef void (*bt_hid_notify_smart_rc_fw_update_status_cb)(int status, unsigned char progress,
                                                           void* user_data);
int bt_hid_set_smart_rc_fw_update_status_cb(bt_hid_notify_smart_rc_fw_update_status_cb callback,
                                            void* user_data);
int bt_hid_unset_smart_rc_fw_update_status_cb(void);

typedef void (*bt_hid_smart_rc_grip_sensor_detected_cb)(unsigned char detected, void* user_data);
int bt_hid_set_smart_rc_grip_sensor_detected_cb(bt_hid_smart_rc_grip_sensor_detected_cb callback,
                                                void* user_data);
int bt_hid_unset_smart_rc_grip_sensor_detected_cb(void);

typedef enum bt_hid_sc_grip_sensor_state_e {
    BT_HID_SC_GRIP_SENSOR_RELEASED = 0,
    BT_HID_SC_GRIP_SENSOR_HELD = 1,
} bt_hid_sc_grip_sensor_state_e;

typedef void (*bt_hid_smart_rc_grip_sensor_state_changed_cb)(bt_hid_sc_grip_sensor_state_e state,
                                                             void* user_data);
int bt_hid_set_smart_rc_grip_sensor_state_changed_cb(
    bt_hid_smart_rc_grip_sensor_state_changed_cb callback, void* user_data);
int bt_hid_unset_smart_rc_grip_sensor_state_changed_cb(void);

/* ---- LE audio broadcast ---- */

typedef enum bt_le_audio_broadcast_state_e {
    BT_LE_AUDIO_BROADCAST_STOPPED = 0,
    BT_LE_AUDIO_BROADCAST_CONFIGURED = 1,
    BT_LE_AUDIO_BROADCAST_STREAMING = 2,
} bt_le_audio_broadcast_state_e;

typedef struct bt_audio_stream_type_s {
    int codec;
    int sample_rate; /* Hz */
    int channels;
} bt_audio_stream_type_s;

typedef void (*bt_le_audio_broadcast_state_changed_cb)(bt_le_audio_broadcast_state_e state,
                                                       bt_audio_stream_type_s stream_type,
                                                       void* user_data);
int bt_le_audio_broadcast_set_state_changed_cb(bt_le_audio_broadcast_state_changed_cb callback,
                                               void* user_data);
int bt_le_audio_broadcast_unset_state_changed_cb(void);

#ifdef __cplusplus
}
#endif

#endif
