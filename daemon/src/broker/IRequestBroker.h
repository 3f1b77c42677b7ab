// The plugin ABI: the one interface through which a plugin talks to the daemon.
// PLUGIN_INIT receives a pointer to the plugin's own broker; it stays valid until
// the plugin is unloaded. The order of the operations is the order of the table
// of virtual functions and never changes. Irregular spellings are part of the ABI.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <sound_manager_tv.h>

#include <functional>

/// Threads: every operation may be called from any thread, also from a callback.
/// Callbacks run one at a time, in order, in the plugin's task context, on whichever
/// thread is running that context.
///
/// Subscribing: each subscription is served separately; a second one of the same
/// plugin is called a second time for each event. No argument is checked. Pointers
/// given to a callback are the plugin's for the duration of the call only.
/// Unsubscribing removes all of the plugin's subscriptions to that event; an event
/// that is being delivered still reaches them. The daemon undoes no subscription: a
/// plugin unsubscribes in PLUGIN_DEINIT.
///
/// Errors: every operation that returns, returns 0. Only the exhaustion of memory
/// and a mutex that can't be locked are thrown, and by the last operation what the
/// work itself throws.
class IRequestBroker {
public:
    virtual ~IRequestBroker() = default;

    // Shared profiles: initialised for the first plugin that asks, deinitialised after the last
    virtual int BtHidHostInitialize(bt_hid_host_connection_state_changed_cb callback,
                                    void* userData) = 0;
    virtual int BtHidHostDeinitialize() = 0;
    virtual int BtAvrcpControlInitialize(bt_avrcp_control_connection_state_changed_cb callback,
                                         void* userData) = 0;
    virtual int BtAvrcpControlDeinitialize() = 0;
    virtual int BtAvrcpTargetInitialize(bt_avrcp_target_connection_state_changed_cb callback,
                                        void* userData) = 0;
    virtual int BtAvrcpTargetDeinitialize() = 0;

    // Adapter
    virtual int BtAdapterSetStateChangedCb(bt_adapter_state_changed_cb callback,
                                           void* userData) = 0;
    virtual int BtAdapterUnsetStateChangedCb() = 0;
    virtual int BtAdapterSetNameChangedCb(bt_adapter_name_changed_cb callback, void* userData) = 0;
    virtual int BtAdapterUnsetNameChangedCb() = 0;
    virtual int BtAdapterSetSspConecntRequestCb(bt_adapter_ssp_consent_req_cb callback,
                                                void* userData) = 0;
    virtual int BtAdapterUnsetSspConecntRequestCb() = 0;  // "Conecnt" is meant
    virtual int BtAdapterSetAuthenticationReqCb(bt_adapter_authentication_req_cb callback,
                                                void* userData) = 0;
    virtual int BtAdapterUnsetAuthenticationReqCb() = 0;
    virtual int BtAdapterSetMaxDeviceConnectedCb(bt_adapter_max_conection_reached_cb callback,
                                                 void* userData) = 0;
    virtual int BtAdapterUnsetMaxDeviceConnectedCb() = 0;
    virtual int BtAdapterSetDeviceDiscoveryStateChangedCb(
        bt_adapter_device_discovery_state_changed_cb callback, void* userData) = 0;
    virtual int BtAdapterUnsetDeviceDiscoveryStateChangedCb() = 0;

    // Hands-free audio gateway
    virtual int BtAgSetScoStateChangedCb(bt_ag_sco_state_changed_cb callback, void* userData) = 0;
    virtual int BtAgUnsetScoStateChangedCb() = 0;
    virtual int BtAgSetSpeakerGainChangedCb(bt_ag_speaker_gain_changed_cb callback,
                                            void* userData) = 0;
    virtual int BtAgUnSetSpeakerGainChangedCb() = 0;  // "UnSet" is meant

    // Audio
    virtual int BtAudioSetAudioStateChangedCb(bt_a2dp_source_audio_state_changed_cb callback,
                                              void* userData) = 0;
    virtual int BtAudioUnsetAudioStateChangedCb() = 0;
    virtual int BtAudioSetConnectionStateChangedCb(bt_audio_connection_state_changed_cb callback,
                                                   void* userData) = 0;
    virtual int BtAudioUnsetConnectionStateChangedCb() = 0;
    virtual int BtAudioSetSlcStateChangedCb(bt_audio_slc_state_changed_cb callback,
                                            void* userData) = 0;
    virtual int BtAudioUnsetSlcStateChangedCb() = 0;

    // AVRCP
    virtual int BtAvrcpSetAbsoluteVolumeChangedCb(bt_avrcp_absolute_volume_changed_cb callback,
                                                  void* userData) = 0;
    virtual int BtAvrcpUnsetAbsoluteVolumeChangedCb() = 0;
    virtual int BtAvrcpSetInterimVolumeNotifyCb(bt_avrcp_interim_volume_notify_cb callback,
                                                void* userData) = 0;
    virtual int BtAvrcpUnetInterimVolumeNotifyCb() = 0;  // "Unet" is meant
    virtual int BtAvrcpSetKeyEventReceivedCb(bt_avrcp_key_event_received_cb callback,
                                             void* userData) = 0;
    virtual int BtAvrcpUnsetKeyEventReceivedCb() = 0;
    virtual int BtAvrcpSetMuteStateShangedWithAddressCb(
        bt_avrcp_mute_state_changed_with_address_cb callback, void* userData) = 0;
    virtual int BtAvrcpUnsetMuteStateShangedWithAddressCb() = 0;  // "Shanged" is meant
    virtual int BtAvrcpSetRemoteFeaturesCb(bt_avrcp_remote_features_cb callback,
                                           void* userData) = 0;
    virtual int BtAvrcpUnsetRemoteFeaturesCb() = 0;
    virtual int BtAvrcpSetVolumeChangedCb(bt_avrcp_volume_changed_cb callback, void* userData) = 0;
    virtual int BtAvrcpUnsetVolumeChangedCb() = 0;
    virtual int BtAvrcpSetVolumeChangedWithAddressCb(
        bt_avrcp_volume_changed_with_address_cb callback, void* userData) = 0;
    virtual int BtAvrcpUnsetVolumeChangedWithAddressCb() = 0;
    virtual int BtAvrcpSetVolumeNotifyCb(bt_avrcp_volume_notified_cb callback, void* userData) = 0;
    virtual int BtAvrcpUnsetVolumeNotifyCb() = 0;

    // Devices
    virtual int BtDeviceSetAuthEventCb(bt_device_auth_event_cb callback, void* userData) = 0;
    virtual int BtDeviceUnsetAuthEventCb() = 0;
    virtual int BtDeviceSetBondCreatedCb(bt_device_bond_created_cb callback, void* userData) = 0;
    virtual int BtDeviceUnsetBondCreatedCb() = 0;
    virtual int BtDeviceSetBondDestroyedCb(bt_device_bond_destroyed_cb callback,
                                           void* userData) = 0;
    virtual int BtDeviceUnsetBondDestroyedCb() = 0;
    virtual int BtDeviceSetConnectionStateChangedCb(bt_device_connection_state_changed_cb callback,
                                                    void* userData) = 0;
    virtual int BtDeviceUnsetConnectionStateChangedCb() = 0;
    virtual int BtDeviceSetServiceSearchedCb(bt_device_service_searched_cb callback,
                                             void* userData) = 0;
    virtual int BtDeviceUnsetServiceSearchedCb() = 0;

    // GATT
    virtual int BtGattSetConnectionStateChangedCb(bt_gatt_connection_state_changed_cb callback,
                                                  void* userData) = 0;
    virtual int BtGattUnsetConnectionStateChangedCb() = 0;

    // HID accessories
    virtual int BtHidSetBrekSwitchChargingStatusReceivedCb(
        bt_hid_notify_battery_charging_status_received_cb callback, void* userData) = 0;
    virtual int BtHidUnsetBrekSwitchChargingStatusReceivedCb() = 0;
    virtual int BtHidSetBrekSwitchConnectionStateChangedCb(
        bt_hid_brek_switch_connection_state_changed_cb callback, void* userData) = 0;
    virtual int BtHidUnsetBrekSwitchConnectionStateChangedCb() = 0;
    virtual int BtHidSetBrekSwitchFirmwareUpdateStateChangedCb(
        bt_hid_brek_switch_firmware_update_state_changed_cb callback, void* userData) = 0;
    virtual int BtHidUnsetBrekSwitchFirmwareUpdateStateChangedCb() = 0;
    virtual int BtHidSetBatteryStatusReceivedCb(bt_hid_notify_battery_status_received_cb callback,
                                                void* userData) = 0;
    virtual int BtHidUnsetBatteryStatusReceivedCb() = 0;
    virtual int BtHidSetSmartRcChargingStatusReceivedCb(
        bt_hid_notify_smart_rc_charging_status_received_cb callback, void* userData) = 0;
    virtual int BtHidUnsetSmartRcChargingStatusReceivedCb() = 0;
    virtual int BtHidSetSmartRcConnectionCb(bt_hid_notify_smart_rc_connection_cb callback,
                                            void* userData) = 0;
    virtual int BtHidUnsetSmartRcConnectionCb() = 0;
    virtual int BtHidSetSmartRcFwUpdateStatusCb(bt_hid_notify_smart_rc_fw_update_status_cb callback,
                                                void* userData) = 0;
    virtual int BtHidUnsetSmartRcFwUpdateStatusCb() = 0;
    virtual int BtHidSetSmartRcGripSensorDetectedCb(
        bt_hid_smart_rc_grip_sensor_detected_cb callback, void* userData) = 0;
    virtual int BtHidUnsetSmartRcGripSensorDetectedCb() = 0;
    virtual int BtHidSetSmartRCgripSensorStateChangedCb(
        bt_hid_smart_rc_grip_sensor_state_changed_cb callback, void* userData) = 0;
    virtual int BtHidUnsetSmartRCgripSensorStateChangedCb() = 0;  // "RCgrip" is meant

    // LE audio broadcast
    virtual int BtLeAudioBroadcastSetStateChangedCb(bt_le_audio_broadcast_state_changed_cb callback,
                                                    void* userData) = 0;
    virtual int BtLeAudioBroadcastUnSetStateChangedCb() = 0;  // "UnSet" is meant

    // Sockets
    virtual int BtSocketSetConnectionStateChangedCb(bt_socket_connection_state_changed_cb callback,
                                                    void* userData) = 0;
    virtual int BtSocketUnsetConnectionStateChangedCb() = 0;
    virtual int BtSocketSetDataReceivedCb(bt_socket_data_received_cb callback, void* userData) = 0;
    virtual int BtSocketUnsetDataReceivedCb() = 0;

    // Sound output
    virtual int SoundManagerSetSpeakerChangedCb(sound_manager_speaker_changed_cb callback,
                                                void* userData) = 0;
    virtual int SoundManagerUnetSpeakerChangedCb() = 0;  // "Unet" is meant
    virtual int SoundManagerSetMultiviewSpeakerChangedCb(
        sound_manager_multiview_speaker_selection_changed_cb callback, void* userData) = 0;
    virtual int SoundManagerUnsetMultiviewSpeakerChangedCb() = 0;

    // Work of the plugin's own

    /// Runs `function(userData)` in the plugin's task context: before this call returns
    /// if no other thread is running the context, else on the thread that is.
    virtual int RequestToInvokeInTaskExecutor(std::function<void(void*)> function,
                                              void* userData) = 0;
};
