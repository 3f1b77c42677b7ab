/*
 * The platform's Bluetooth: adapter, devices, audio, hands-free gateway, AVRCP, HID
 * host, GATT and sockets. Each kind of event has one callback: setting replaces it,
 * unsetting clears it. The platform chooses the thread on which it calls a callback;
 * strings and records are valid only during the call. Strings are UTF-8; an address
 * is six hexadecimal pairs joined by colons. Every function returns 0 or a negative
 * error.
 */
#ifndef PLATFORM_BLUETOOTH_H
#define PLATFORM_BLUETOOTH_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Audio stack ---- */

int bt_audio_initialize(void);
int bt_audio_deinitialize(void);

/* ---- Adapter ---- */

typedef enum bt_adapter_state_e {
    BT_ADAPTER_STATE_OFF = 0,
    BT_ADAPTER_STATE_ON = 1,
} bt_adapter_state_e;

typedef void (*bt_adapter_state_changed_cb)(int result, bt_adapter_state_e state, void* user_data);
int bt_adapter_set_state_changed_cb(bt_adapter_state_changed_cb callback, void* user_data);
int bt_adapter_unset_state_changed_cb(void);

typedef void (*bt_adapter_name_changed_cb)(char* name, void* user_data);
int bt_adapter_set_name_changed_cb(bt_adapter_name_changed_cb callback, void* user_data);
int bt_adapter_unset_name_changed_cb(void);

typedef void (*bt_adapter_ssp_consent_req_cb)(int result, char* name, char* address,
                                              void* user_data);
int bt_adapter_set_ssp_consent_request_cb(bt_adapter_ssp_consent_req_cb callback, void* user_data);
int bt_adapter_unset_ssp_consent_request_cb(void);

typedef enum bt_authentication_type_info_e {
    BT_AUTHENTICATION_PIN_REQUEST = 0,
    BT_AUTHENTICATION_PIN_DISPLAY = 1,
    BT_AUTHENTICATION_PASSKEY_REQUEST = 2,
    BT_AUTHENTICATION_PASSKEY_DISPLAY = 3,
    BT_AUTHENTICATION_PASSKEY_CONFIRM = 4,
} bt_authentication_type_info_e;

/* `key` is the PIN or the six-digit passkey, or empty. */
typedef void (*bt_adapter_authentication_req_cb)(int result, bt_authentication_type_info_e type,
                                                 char* name, char* address, char* key,
                                                 void* user_data);
int bt_adapter_set_authentication_req_cb(bt_adapter_authentication_req_cb callback,
                                         void* user_data);
int bt_adapter_unset_authentication_req_cb(void);

/* The typedef's irregular spelling is the platform's. */
typedef void (*bt_adapter_max_conection_reached_cb)(int result, char* address, void* user_data);
int bt_adapter_set_max_device_connected_cb(bt_adapter_max_conection_reached_cb callback,
                                           void* user_data);
int bt_adapter_unset_max_device_connected_cb(void);

typedef enum bt_adapter_device_discovery_state_e {
    BT_ADAPTER_DEVICE_DISCOVERY_STARTED = 0,
    BT_ADAPTER_DEVICE_DISCOVERY_FINISHED = 1,
    BT_ADAPTER_DEVICE_DISCOVERY_FOUND = 2,
} bt_adapter_device_discovery_state_e;

/* The three parts of a class-of-device number, each shifted down to bit 0. */
typedef struct bt_class_s {
    int major_device_class;
    int minor_device_class;
    int major_service_class_mask;
} bt_class_s;

typedef struct bt_adapter_device_discovery_info_s {
    char* remote_address;
    char* remote_name;
    bt_class_s bt_class;
    int rssi; /* dBm */
    bool is_bonded;
    char** service_uuid;
    int service_count;
    int appearance;
    int manufacturer_data_len; /* bytes */
    char* manufacturer_data;
} bt_adapter_device_discovery_info_s;

/* `info` is never null; its strings are empty unless a device was found. */
typedef void (*bt_adapter_device_discovery_state_changed_cb)(
    int result, bt_adapter_device_discovery_state_e state, bt_adapter_device_discovery_info_s* info,
    void* user_data);
int bt_adapter_set_device_discovery_state_changed_cb(
    bt_adapter_device_discovery_state_changed_cb callback, void* user_data);
int bt_adapter_unset_device_discovery_state_changed_cb(void);

/* ---- Device ---- */

typedef enum bt_profile_service_id_e {
    BT_PROFILE_SERVICE_UNKNOWN = 0,
    BT_PROFILE_SERVICE_SERIAL_PORT = 1,
    BT_PROFILE_SERVICE_A2DP_SOURCE = 2,
    BT_PROFILE_SERVICE_A2DP_SINK = 3,
    BT_PROFILE_SERVICE_AVRCP_TARGET = 4,
    BT_PROFILE_SERVICE_AVRCP_CONTROL = 5,
    BT_PROFILE_SERVICE_HANDS_FREE = 6,
    BT_PROFILE_SERVICE_HID = 7,
} bt_profile_service_id_e;

typedef void (*bt_device_auth_event_cb)(int result, char* name, char* address,
                                        bt_profile_service_id_e service, void* user_data);
int bt_device_set_auth_event_cb(bt_device_auth_event_cb callback, void* user_data);
int bt_device_unset_auth_event_cb(void);

typedef struct bt_device_info_s {
    char* remote_address;
    char* remote_name;
    bt_class_s bt_class;
    char** service_uuid;
    int service_count;
    bool is_bonded;
    bool is_connected;
    bool is_authorized;
    int manufacturer_data_len; /* bytes */
    char* manufacturer_data;
} bt_device_info_s;

/* `info` and every pointer in it may be null. */
typedef void (*bt_device_bond_created_cb)(int result, bt_device_info_s* info, void* user_data);
int bt_device_set_bond_created_cb(bt_device_bond_created_cb callback, void* user_data);
int bt_device_unset_bond_created_cb(void);

typedef void (*bt_device_bond_destroyed_cb)(int result, char* address, void* user_data);
int bt_device_set_bond_destroyed_cb(bt_device_bond_destroyed_cb callback, void* user_data);
int bt_device_unset_bond_destroyed_cb(void);

typedef enum bt_device_connection_link_type_e {
    BT_DEVICE_LINK_BREDR = 0,
    BT_DEVICE_LINK_LE = 1,
} bt_device_connection_link_type_e;

typedef enum bt_device_disconnect_reason_e {
    BT_DEVICE_DISCONNECT_REASON_UNKNOWN = 0,
    BT_DEVICE_DISCONNECT_REASON_TIMEOUT = 1,
    BT_DEVICE_DISCONNECT_REASON_LOCAL = 2,
    BT_DEVICE_DISCONNECT_REASON_REMOTE = 3,
    BT_DEVICE_DISCONNECT_REASON_AUTHENTICATION = 4,
    BT_DEVICE_DISCONNECT_REASON_SUSPEND = 5,
} bt_device_disconnect_reason_e;

typedef struct bt_device_connection_info_s {
    char* remote_address;
    bt_device_connection_link_type_e link;
    bt_device_disconnect_reason_e disconn_reason;
} bt_device_connection_info_s;

typedef void (*bt_device_connection_state_changed_cb)(bool connected,
                                                      bt_device_connection_info_s* info,
                                                      void* user_data);
int bt_device_set_connection_state_changed_cb(bt_device_connection_state_changed_cb callback,
                                              void* user_data);
int bt_device_unset_connection_state_changed_cb(void);

typedef struct bt_device_sdp_info_s {
    char* remote_address;
    char** service_uuid;
    int service_count;
} bt_device_sdp_info_s;

typedef void (*bt_device_service_searched_cb)(int result, bt_device_sdp_info_s* info,
                                              void* user_data);
int bt_device_set_service_searched_cb(bt_device_service_searched_cb callback, void* user_data);
int bt_device_unset_service_searched_cb(void);

/* ---- HID host ---- */

typedef void (*bt_hid_host_connection_state_changed_cb)(int result, bool connected,
                                                        const char* address, void* user_data);
int bt_hid_host_initialize(bt_hid_host_connection_state_changed_cb callback, void* user_data);
int bt_hid_host_deinitialize(void);

/* ---- AVRCP ---- */

typedef void (*bt_avrcp_control_connection_state_changed_cb)(bool connected, const char* address,
                                                             void* user_data);
int bt_avrcp_control_initialize(bt_avrcp_control_connection_state_changed_cb callback,
                                void* user_data);
int bt_avrcp_control_deinitialize(void);

typedef void (*bt_avrcp_target_connection_state_changed_cb)(bool connected, const char* address,
                                                            void* user_data);
int bt_avrcp_target_initialize(bt_avrcp_target_connection_state_changed_cb callback,
                               void* user_data);
int bt_avrcp_target_deinitialize(void);

/* ---- Hands-free audio gateway ---- */

typedef void (*bt_ag_sco_state_changed_cb)(int result, bool opened, void* user_data);
int bt_ag_set_sco_state_changed_cb(bt_ag_sco_state_changed_cb callback, void* user_data);
int bt_ag_unset_sco_state_changed_cb(void);

typedef void (*bt_ag_speaker_gain_changed_cb)(int gain, void* user_data);
int bt_ag_set_speaker_gain_changed_cb(bt_ag_speaker_gain_changed_cb callback, void* user_data);
int bt_ag_unset_speaker_gain_changed_cb(void);

/* ---- Audio ---- */

typedef enum bt_a2dp_source_audio_state_e {
    BT_A2DP_SOURCE_AUDIO_STATE_STOPPED = 0,
    BT_A2DP_SOURCE_AUDIO_STATE_SUSPENDED = 1,
    BT_A2DP_SOURCE_AUDIO_STATE_STARTED = 2,
} bt_a2dp_source_audio_state_e;

typedef void (*bt_a2dp_source_audio_state_changed_cb)(bt_a2dp_source_audio_state_e state,
                                                      const char* address, void* user_data);
int bt_audio_set_audio_state_changed_cb(bt_a2dp_source_audio_state_changed_cb callback,
                                        void* user_data);
int bt_audio_unset_audio_state_changed_cb(void);

typedef enum bt_audio_profile_type_e {
    BT_AUDIO_PROFILE_HANDS_FREE = 0,
    BT_AUDIO_PROFILE_A2DP_SOURCE = 1,
    BT_AUDIO_PROFILE_A2DP_SINK = 2,
    BT_AUDIO_PROFILE_AUDIO_GATEWAY = 3,
} bt_audio_profile_type_e;

typedef void (*bt_audio_connection_state_changed_cb)(int result, bool connected,
                                                     const char* address,
                                                     bt_audio_profile_type_e profile,
                                                     void* user_data);
int bt_audio_set_connection_state_changed_cb(bt_audio_connection_state_changed_cb callback,
                                             void* user_data);
int bt_audio_unset_connection_state_changed_cb(void);

typedef void (*bt_audio_slc_state_changed_cb)(bool connected, char* address, void* user_data);
int bt_audio_set_slc_state_changed_cb(bt_audio_slc_state_changed_cb callback, void* user_data);
int bt_audio_unset_slc_state_changed_cb(void);

/* ---- GATT ---- */

typedef void (*bt_gatt_connection_state_changed_cb)(int result, bool connected, const char* address,
                                                    void* user_data);
int bt_gatt_set_connection_state_changed_cb(bt_gatt_connection_state_changed_cb callback,
                                            void* user_data);
int bt_gatt_unset_connection_state_changed_cb(void);

/* ---- Sockets ---- */

typedef enum bt_socket_connection_state_e {
    BT_SOCKET_CONNECTED = 0,
    BT_SOCKET_DISCONNECTED = 1,
} bt_socket_connection_state_e;

typedef enum bt_socket_role_e {
    BT_SOCKET_ROLE_UNKNOWN = 0,
    BT_SOCKET_ROLE_SERVER = 1,
    BT_SOCKET_ROLE_CLIENT = 2,
} bt_socket_role_e;

typedef struct bt_socket_connection_s {
    int socket_fd;
    int server_fd; /* -1 if there is no listening socket */
    bt_socket_role_e local_role;
    char* remote_address;
    char* service_uuid;
} bt_socket_connection_s;

typedef void (*bt_socket_connection_state_changed_cb)(int result,
                                                      bt_socket_connection_state_e state,
                                                      bt_socket_connection_s* connection,
                                                      void* user_data);
int bt_socket_set_connection_state_changed_cb(bt_socket_connection_state_changed_cb callback,
                                              void* user_data);
int bt_socket_unset_connection_state_changed_cb(void);

typedef struct bt_socket_received_data_s {
    int socket_fd;
    int data_size; /* bytes; `data` has no terminator */
    char* data;
} bt_socket_received_data_s;

typedef void (*bt_socket_data_received_cb)(bt_socket_received_data_s* data, void* user_data);
int bt_socket_set_data_received_cb(bt_socket_data_received_cb callback, void* user_data);
int bt_socket_unset_data_received_cb(void);

#ifdef __cplusplus
}
#endif

#endif
