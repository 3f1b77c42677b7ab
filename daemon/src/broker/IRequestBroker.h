// The plugin ABI: the one interface through which a plugin talks to the daemon.
// PLUGIN_INIT receives a pointer to the plugin's own broker; it stays valid until
// the plugin is unloaded. The order of the operations is the order of the table
// of virtual functions and never changes. Irregular spellings are part of the ABI.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <sound_manager_tv.h>

#include <functional>

/// The operations that a plugin can call. An operation with a callback subscribes to one kind of
/// event; the operation after it unsubscribes.
///
/// **Threads.** Every operation may be called from any thread, also in a callback.
/// Callbacks and requested work run in the plugin's task context: one at a time and in order. The
/// thread may differ from call to call; often it is one of the platform's. PLUGIN_INIT and
/// PLUGIN_DEINIT run on the main thread and not in the context: a callback may run on another
/// thread at the same time.
///
/// **Pointers.** Strings and records passed to a callback are copies for this one call; they are
/// freed when it returns. The plugin frees nothing and does not change the pointers in a record. A
/// string is never null. A record, or a pointer in it, is null only where the operation says so; an
/// array is null if its count is 0. An address is six hexadecimal pairs joined by colons, or empty.
/// `userData` is passed unchanged.
///
/// **Subscribing.** The platform's callback is set for the first subscriber of all
/// plugins and unset after the last. Each subscription counts: a plugin that subscribes
/// twice is called twice. No argument is checked; a null callback crashes at the first
/// event. `result`, where an event has one, comes from the platform: 0 for success.
///
/// **Unsubscribing** removes all of the plugin's subscriptions to the event. It may be called in
/// the event's own callback, and does nothing without a subscription. It waits for no callback: an
/// event that is being delivered still arrives. The daemon removes no subscription itself: a plugin
/// unsubscribes in PLUGIN_DEINIT, and before its PLUGIN_INIT fails.
///
/// **Results.** Every operation returns 0, whatever the platform returned; use the events to learn
/// the platform's state. Operations throw std::bad_alloc, or std::system_error if a mutex can't be
/// locked; the last operation also throws what its description says.
class IRequestBroker {
public:
    /// Called by the daemon; a plugin never deletes its broker.
    virtual ~IRequestBroker() = default;

    /// @name Shared profiles
    /// A profile is initialised for its first subscriber and deinitialised after its last. To
    /// initialise it is to subscribe to its connection events: a plugin that initialises twice is
    /// called twice, and one deinitialise ends both.
    /// @{

    /// Initialises the HID host. Events: a HID device has connected or disconnected, `(result,
    /// connected, address)`.
    virtual int BtHidHostInitialize(bt_hid_host_connection_state_changed_cb callback,
                                    void* userData) = 0;
    /// Releases the profile: ends BtHidHostInitialize.
    virtual int BtHidHostDeinitialize() = 0;

    /// Initialises AVRCP control. Events: a device that this one controls has connected or
    /// disconnected, `(connected, address)`.
    virtual int BtAvrcpControlInitialize(bt_avrcp_control_connection_state_changed_cb callback,
                                         void* userData) = 0;
    /// Releases the profile: ends BtAvrcpControlInitialize.
    virtual int BtAvrcpControlDeinitialize() = 0;

    /// Initialises the AVRCP target. Events: a device that controls this one has connected or
    /// disconnected, `(connected, address)`.
    virtual int BtAvrcpTargetInitialize(bt_avrcp_target_connection_state_changed_cb callback,
                                        void* userData) = 0;
    /// Releases the profile: ends BtAvrcpTargetInitialize.
    virtual int BtAvrcpTargetDeinitialize() = 0;
    /// @}

    /// @name Adapter
    /// @{

    /// The adapter was switched on or off: `(result, state)`.
    virtual int BtAdapterSetStateChangedCb(bt_adapter_state_changed_cb callback,
                                           void* userData) = 0;
    /// Ends BtAdapterSetStateChangedCb.
    virtual int BtAdapterUnsetStateChangedCb() = 0;

    /// The adapter has a new name: `(name)`.
    virtual int BtAdapterSetNameChangedCb(bt_adapter_name_changed_cb callback, void* userData) = 0;
    /// Ends BtAdapterSetNameChangedCb.
    virtual int BtAdapterUnsetNameChangedCb() = 0;

    /// A device asks to pair, without a key: `(result, name, address)`. "Conecnt" is part of the
    /// ABI.
    virtual int BtAdapterSetSspConecntRequestCb(bt_adapter_ssp_consent_req_cb callback,
                                                void* userData) = 0;
    /// Ends BtAdapterSetSspConecntRequestCb. "Conecnt" is part of the ABI.
    virtual int BtAdapterUnsetSspConecntRequestCb() = 0;

    /// A device asks to pair, with a PIN or passkey: `(result, type, name, address, key)`;
    /// `key` is empty where there is none.
    virtual int BtAdapterSetAuthenticationReqCb(bt_adapter_authentication_req_cb callback,
                                                void* userData) = 0;
    /// Ends BtAdapterSetAuthenticationReqCb.
    virtual int BtAdapterUnsetAuthenticationReqCb() = 0;

    /// No further device can connect: `(result, address)`. The platform spells the
    /// callback type like this.
    virtual int BtAdapterSetMaxDeviceConnectedCb(bt_adapter_max_conection_reached_cb callback,
                                                 void* userData) = 0;
    /// Ends BtAdapterSetMaxDeviceConnectedCb.
    virtual int BtAdapterUnsetMaxDeviceConnectedCb() = 0;

    /// The search for devices started, ended or found one: `(result, state, info)`. `info` is
    /// never null. Its class mask repeats the major class and its appearance is 0: read them
    /// elsewhere.
    virtual int BtAdapterSetDeviceDiscoveryStateChangedCb(
        bt_adapter_device_discovery_state_changed_cb callback, void* userData) = 0;
    /// Ends BtAdapterSetDeviceDiscoveryStateChangedCb.
    virtual int BtAdapterUnsetDeviceDiscoveryStateChangedCb() = 0;
    /// @}

    /// @name Hands-free audio gateway
    /// @{

    /// The voice link of a call was opened or closed: `(result, opened)`.
    virtual int BtAgSetScoStateChangedCb(bt_ag_sco_state_changed_cb callback, void* userData) = 0;
    /// Ends BtAgSetScoStateChangedCb.
    virtual int BtAgUnsetScoStateChangedCb() = 0;

    /// A hands-free device changed its volume: `(gain)`.
    virtual int BtAgSetSpeakerGainChangedCb(bt_ag_speaker_gain_changed_cb callback,
                                            void* userData) = 0;
    /// Ends BtAgSetSpeakerGainChangedCb. "UnSet" is part of the ABI.
    virtual int BtAgUnSetSpeakerGainChangedCb() = 0;
    /// @}

    /// @name Audio
    /// @{

    /// Sound to a device was started, suspended or stopped: `(state, address)`.
    virtual int BtAudioSetAudioStateChangedCb(bt_a2dp_source_audio_state_changed_cb callback,
                                              void* userData) = 0;
    /// Ends BtAudioSetAudioStateChangedCb.
    virtual int BtAudioUnsetAudioStateChangedCb() = 0;

    /// An audio profile has connected or disconnected: `(result, connected, address, profile)`.
    virtual int BtAudioSetConnectionStateChangedCb(bt_audio_connection_state_changed_cb callback,
                                                   void* userData) = 0;
    /// Ends BtAudioSetConnectionStateChangedCb.
    virtual int BtAudioUnsetConnectionStateChangedCb() = 0;

    /// A hands-free device's control link is up or down: `(connected, address)`.
    virtual int BtAudioSetSlcStateChangedCb(bt_audio_slc_state_changed_cb callback,
                                            void* userData) = 0;
    /// Ends BtAudioSetSlcStateChangedCb.
    virtual int BtAudioUnsetSlcStateChangedCb() = 0;
    /// @}

    /// @name AVRCP
    /// @{

    /// A device set its absolute volume: `(address, volume)`, from 0 to 127 as all volumes
    /// here.
    virtual int BtAvrcpSetAbsoluteVolumeChangedCb(bt_avrcp_absolute_volume_changed_cb callback,
                                                  void* userData) = 0;
    /// Ends BtAvrcpSetAbsoluteVolumeChangedCb.
    virtual int BtAvrcpUnsetAbsoluteVolumeChangedCb() = 0;

    /// A device reported its volume at the start of the notifications: `(address, volume)`.
    virtual int BtAvrcpSetInterimVolumeNotifyCb(bt_avrcp_interim_volume_notify_cb callback,
                                                void* userData) = 0;
    /// Ends BtAvrcpSetInterimVolumeNotifyCb. "Unet" is part of the ABI.
    virtual int BtAvrcpUnetInterimVolumeNotifyCb() = 0;

    /// A key was pressed or released on a remote device: `(event)`, never null.
    virtual int BtAvrcpSetKeyEventReceivedCb(bt_avrcp_key_event_received_cb callback,
                                             void* userData) = 0;
    /// Ends BtAvrcpSetKeyEventReceivedCb.
    virtual int BtAvrcpUnsetKeyEventReceivedCb() = 0;

    /// A device was muted or unmuted: `(address, muted)`. "Shanged" is part of the ABI.
    virtual int BtAvrcpSetMuteStateShangedWithAddressCb(
        bt_avrcp_mute_state_changed_with_address_cb callback, void* userData) = 0;
    /// Ends BtAvrcpSetMuteStateShangedWithAddressCb. "Shanged" is part of the ABI.
    virtual int BtAvrcpUnsetMuteStateShangedWithAddressCb() = 0;

    /// The features of a remote device are known: `(features)`, never null. The daemon logs it
    /// before it calls the plugin.
    virtual int BtAvrcpSetRemoteFeaturesCb(bt_avrcp_remote_features_cb callback,
                                           void* userData) = 0;
    /// Ends BtAvrcpSetRemoteFeaturesCb.
    virtual int BtAvrcpUnsetRemoteFeaturesCb() = 0;

    /// The volume of the device in use has changed: `(volume)`.
    virtual int BtAvrcpSetVolumeChangedCb(bt_avrcp_volume_changed_cb callback, void* userData) = 0;
    /// Ends BtAvrcpSetVolumeChangedCb.
    virtual int BtAvrcpUnsetVolumeChangedCb() = 0;

    /// The volume of a device has changed: `(address, volume)`.
    virtual int BtAvrcpSetVolumeChangedWithAddressCb(
        bt_avrcp_volume_changed_with_address_cb callback, void* userData) = 0;
    /// Ends BtAvrcpSetVolumeChangedWithAddressCb.
    virtual int BtAvrcpUnsetVolumeChangedWithAddressCb() = 0;

    /// A device asks for volume notifications: no arguments but the user data.
    virtual int BtAvrcpSetVolumeNotifyCb(bt_avrcp_volume_notified_cb callback, void* userData) = 0;
    /// Ends BtAvrcpSetVolumeNotifyCb.
    virtual int BtAvrcpUnsetVolumeNotifyCb() = 0;
    /// @}

    /// @name Devices
    /// @{

    /// A device asks to use a service: `(result, name, address, service)`.
    virtual int BtDeviceSetAuthEventCb(bt_device_auth_event_cb callback, void* userData) = 0;
    /// Ends BtDeviceSetAuthEventCb.
    virtual int BtDeviceUnsetAuthEventCb() = 0;

    /// Pairing has ended: `(result, info)`. `info` and every pointer in it may be null, also
    /// `service_uuid` with a `service_count`.
    virtual int BtDeviceSetBondCreatedCb(bt_device_bond_created_cb callback, void* userData) = 0;
    /// Ends BtDeviceSetBondCreatedCb.
    virtual int BtDeviceUnsetBondCreatedCb() = 0;

    /// A device is no longer paired: `(result, address)`.
    virtual int BtDeviceSetBondDestroyedCb(bt_device_bond_destroyed_cb callback,
                                           void* userData) = 0;
    /// Ends BtDeviceSetBondDestroyedCb.
    virtual int BtDeviceUnsetBondDestroyedCb() = 0;

    /// A device has connected or disconnected: `(connected, info)`. `info` is never null. The
    /// daemon logs it before it calls the plugin.
    virtual int BtDeviceSetConnectionStateChangedCb(bt_device_connection_state_changed_cb callback,
                                                    void* userData) = 0;
    /// Ends BtDeviceSetConnectionStateChangedCb.
    virtual int BtDeviceUnsetConnectionStateChangedCb() = 0;

    /// The services of a device are known: `(result, info)`. `info` is never null.
    virtual int BtDeviceSetServiceSearchedCb(bt_device_service_searched_cb callback,
                                             void* userData) = 0;
    /// Ends BtDeviceSetServiceSearchedCb.
    virtual int BtDeviceUnsetServiceSearchedCb() = 0;
    /// @}

    /// @name GATT
    /// @{

    /// A GATT connection was made or has ended: `(result, connected, address)`.
    virtual int BtGattSetConnectionStateChangedCb(bt_gatt_connection_state_changed_cb callback,
                                                  void* userData) = 0;
    /// Ends BtGattSetConnectionStateChangedCb.
    virtual int BtGattUnsetConnectionStateChangedCb() = 0;
    /// @}

    /// @name HID accessories
    /// @{

    /// The accessory switch reported its battery level: `(level, charging)`, in percent, and 1
    /// while the charger is connected. "Brek", here and below, is part of the ABI.
    virtual int BtHidSetBrekSwitchChargingStatusReceivedCb(
        bt_hid_notify_battery_charging_status_received_cb callback, void* userData) = 0;
    /// Ends BtHidSetBrekSwitchChargingStatusReceivedCb.
    virtual int BtHidUnsetBrekSwitchChargingStatusReceivedCb() = 0;

    /// The switch has connected or disconnected: `(connected, info)`. `info` and every pointer
    /// in it may be null.
    virtual int BtHidSetBrekSwitchConnectionStateChangedCb(
        bt_hid_brek_switch_connection_state_changed_cb callback, void* userData) = 0;
    /// Ends BtHidSetBrekSwitchConnectionStateChangedCb.
    virtual int BtHidUnsetBrekSwitchConnectionStateChangedCb() = 0;

    /// The firmware update of the switch progressed: `(state)`.
    virtual int BtHidSetBrekSwitchFirmwareUpdateStateChangedCb(
        bt_hid_brek_switch_firmware_update_state_changed_cb callback, void* userData) = 0;
    /// Ends BtHidSetBrekSwitchFirmwareUpdateStateChangedCb.
    virtual int BtHidUnsetBrekSwitchFirmwareUpdateStateChangedCb() = 0;

    /// A HID device reported its battery status: `(status)`, never null. The address in it is
    /// truncated to 17 characters.
    virtual int BtHidSetBatteryStatusReceivedCb(bt_hid_notify_battery_status_received_cb callback,
                                                void* userData) = 0;
    /// Ends BtHidSetBatteryStatusReceivedCb.
    virtual int BtHidUnsetBatteryStatusReceivedCb() = 0;

    /// The remote control reported its battery level: `(level, charging)`, in percent, and 1 while
    /// the charger is connected.
    virtual int BtHidSetSmartRcChargingStatusReceivedCb(
        bt_hid_notify_smart_rc_charging_status_received_cb callback, void* userData) = 0;
    /// Ends BtHidSetSmartRcChargingStatusReceivedCb.
    virtual int BtHidUnsetSmartRcChargingStatusReceivedCb() = 0;

    /// The remote control has connected or disconnected: `(connected, info)`. `info` and every
    /// pointer in it may be null.
    virtual int BtHidSetSmartRcConnectionCb(bt_hid_notify_smart_rc_connection_cb callback,
                                            void* userData) = 0;
    /// Ends BtHidSetSmartRcConnectionCb.
    virtual int BtHidUnsetSmartRcConnectionCb() = 0;

    /// The firmware update of the remote control progressed: `(status, progress)`, in percent.
    virtual int BtHidSetSmartRcFwUpdateStatusCb(bt_hid_notify_smart_rc_fw_update_status_cb callback,
                                                void* userData) = 0;
    /// Ends BtHidSetSmartRcFwUpdateStatusCb.
    virtual int BtHidUnsetSmartRcFwUpdateStatusCb() = 0;

    /// The remote control's grip sensor was detected: `(detected)`.
    virtual int BtHidSetSmartRcGripSensorDetectedCb(
        bt_hid_smart_rc_grip_sensor_detected_cb callback, void* userData) = 0;
    /// Ends BtHidSetSmartRcGripSensorDetectedCb.
    virtual int BtHidUnsetSmartRcGripSensorDetectedCb() = 0;

    /// The remote control was picked up or put down: `(state)`. "RCgrip" is part of the ABI.
    virtual int BtHidSetSmartRCgripSensorStateChangedCb(
        bt_hid_smart_rc_grip_sensor_state_changed_cb callback, void* userData) = 0;
    /// Ends BtHidSetSmartRCgripSensorStateChangedCb. "RCgrip" is part of the ABI.
    virtual int BtHidUnsetSmartRCgripSensorStateChangedCb() = 0;
    /// @}

    /// @name LE audio broadcast
    /// @{

    /// The broadcast was configured, started or stopped: `(state, stream_type)`, the record
    /// by value.
    virtual int BtLeAudioBroadcastSetStateChangedCb(bt_le_audio_broadcast_state_changed_cb callback,
                                                    void* userData) = 0;
    /// Ends BtLeAudioBroadcastSetStateChangedCb. "UnSet" is part of the ABI.
    virtual int BtLeAudioBroadcastUnSetStateChangedCb() = 0;
    /// @}

    /// @name Sockets
    /// @{

    /// A socket connection was made or has ended: `(result, state, connection)`. `connection`
    /// is never null.
    virtual int BtSocketSetConnectionStateChangedCb(bt_socket_connection_state_changed_cb callback,
                                                    void* userData) = 0;
    /// Ends BtSocketSetConnectionStateChangedCb.
    virtual int BtSocketUnsetConnectionStateChangedCb() = 0;

    /// A socket received data: `(data)`, never null. It holds `data_size` bytes without a
    /// terminator; its pointer is null if there are none.
    virtual int BtSocketSetDataReceivedCb(bt_socket_data_received_cb callback, void* userData) = 0;
    /// Ends BtSocketSetDataReceivedCb.
    virtual int BtSocketUnsetDataReceivedCb() = 0;
    /// @}

    /// @name Sound output
    /// @{

    /// The audio output route changed: `(route)`.
    virtual int SoundManagerSetSpeakerChangedCb(sound_manager_speaker_changed_cb callback,
                                                void* userData) = 0;
    /// Ends SoundManagerSetSpeakerChangedCb. "Unet" is part of the ABI.
    virtual int SoundManagerUnetSpeakerChangedCb() = 0;

    /// The audio output route of one view of a split screen changed: `(route, view)`. Views are
    /// counted from 0.
    virtual int SoundManagerSetMultiviewSpeakerChangedCb(
        sound_manager_multiview_speaker_selection_changed_cb callback, void* userData) = 0;
    /// Ends SoundManagerSetMultiviewSpeakerChangedCb.
    virtual int SoundManagerUnsetMultiviewSpeakerChangedCb() = 0;
    /// @}

    /// @name Tasks of the plugin
    /// @{

    /// Runs a copy of `function` with `userData` in the plugin's task context: before this call
    /// returns if no thread is running the context, otherwise later on the running thread. At most
    /// ten tasks, including events, are queued behind the running one; the next caller waits up to
    /// 15 s for room. Returns 0. Throws std::domain_error if there is no room then, and what a task
    /// on this thread throws: std::bad_function_call if `function` is empty.
    virtual int RequestToInvokeInTaskExecutor(std::function<void(void*)> function,
                                              void* userData) = 0;
    /// @}
};

/// The number of operations, left in each plugin for `corvane check` to compare.
[[gnu::section(".corvane.abi"), gnu::used]] static const int corvaneOperationCount = 85;
