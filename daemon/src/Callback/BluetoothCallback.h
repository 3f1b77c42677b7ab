// The Bluetooth event sources: one class for each platform callback, named after it. Owner, threads
// and errors: see CallbackImpl. getInvokingTask copies a record for each subscriber. A null string
// throws std::logic_error; only DeviceInfoCopy accepts null pointers. Irregular spellings are part
// of the names.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "daemon/src/Callback/DeviceInfoCopy.h"
#include "daemon/src/Callback/EventSource.h"
#include "daemon/src/Callback/RecordBuffers.h"
#include "daemon/src/common/log.h"

class BtHostConnectionStateChangedCb
    : public CallbackImpl<bt_hid_host_connection_state_changed_cb, int, bool, const std::string&> {
    EVENT_SOURCE(BtHostConnectionStateChangedCb, bt_hid_host_initialize, bt_hid_host_deinitialize)

    std::function<void()> getInvokingTask(bt_hid_host_connection_state_changed_cb fn, int result,
                                          bool connected, const std::string& address,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, connected, address);
    }
};

class BtAvrcpControlConnectionStateChangedCb
    : public CallbackImpl<bt_avrcp_control_connection_state_changed_cb, bool, const std::string&> {
    EVENT_SOURCE(BtAvrcpControlConnectionStateChangedCb, bt_avrcp_control_initialize,
                 bt_avrcp_control_deinitialize)

    std::function<void()> getInvokingTask(bt_avrcp_control_connection_state_changed_cb fn,
                                          bool connected, const std::string& address,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, connected, address);
    }
};

class BtAvrcpTargetConnectionStateChangedCb
    : public CallbackImpl<bt_avrcp_target_connection_state_changed_cb, bool, const std::string&> {
    EVENT_SOURCE(BtAvrcpTargetConnectionStateChangedCb, bt_avrcp_target_initialize,
                 bt_avrcp_target_deinitialize)

    std::function<void()> getInvokingTask(bt_avrcp_target_connection_state_changed_cb fn,
                                          bool connected, const std::string& address,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, connected, address);
    }
};

class BtAdapterStateChangedCb
    : public CallbackImpl<bt_adapter_state_changed_cb, int, bt_adapter_state_e> {
    EVENT_SOURCE(BtAdapterStateChangedCb, bt_adapter_set_state_changed_cb,
                 bt_adapter_unset_state_changed_cb)

    std::function<void()> getInvokingTask(bt_adapter_state_changed_cb fn, int result,
                                          bt_adapter_state_e state, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, state);
    }
};

class BtAdapterNameChangedCb : public CallbackImpl<bt_adapter_name_changed_cb, const std::string&> {
    EVENT_SOURCE(BtAdapterNameChangedCb, bt_adapter_set_name_changed_cb,
                 bt_adapter_unset_name_changed_cb)

    std::function<void()> getInvokingTask(bt_adapter_name_changed_cb fn, const std::string& name,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, name);
    }
};

class BtAdapterSspConecntRequestCb : public CallbackImpl<bt_adapter_ssp_consent_req_cb, int,
                                                         const std::string&, const std::string&> {
    EVENT_SOURCE(BtAdapterSspConecntRequestCb, bt_adapter_set_ssp_consent_request_cb,
                 bt_adapter_unset_ssp_consent_request_cb)

    std::function<void()> getInvokingTask(bt_adapter_ssp_consent_req_cb fn, int result,
                                          const std::string& name, const std::string& address,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, name, address);
    }
};

class BtAdapterAuthenticationReqCb
    : public CallbackImpl<bt_adapter_authentication_req_cb, int, bt_authentication_type_info_e,
                          const std::string&, const std::string&, const std::string&> {
    EVENT_SOURCE(BtAdapterAuthenticationReqCb, bt_adapter_set_authentication_req_cb,
                 bt_adapter_unset_authentication_req_cb)

    std::function<void()> getInvokingTask(bt_adapter_authentication_req_cb fn, int result,
                                          bt_authentication_type_info_e type,
                                          const std::string& name, const std::string& address,
                                          const std::string& key, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, type, name, address, key);
    }
};

class BtAdapterMaxDeviceConnectedCb
    : public CallbackImpl<bt_adapter_max_conection_reached_cb, int, const std::string&> {
    EVENT_SOURCE(BtAdapterMaxDeviceConnectedCb, bt_adapter_set_max_device_connected_cb,
                 bt_adapter_unset_max_device_connected_cb)

    std::function<void()> getInvokingTask(bt_adapter_max_conection_reached_cb fn, int result,
                                          const std::string& address, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, address);
    }
};

class BtAdapterDeviceDiscoveryStateChangedCb
    : public CallbackImpl<bt_adapter_device_discovery_state_changed_cb, int,
                          bt_adapter_device_discovery_state_e,
                          bt_adapter_device_discovery_info_s*> {
    EVENT_SOURCE(BtAdapterDeviceDiscoveryStateChangedCb,
                 bt_adapter_set_device_discovery_state_changed_cb,
                 bt_adapter_unset_device_discovery_state_changed_cb)

    std::function<void()> getInvokingTask(bt_adapter_device_discovery_state_changed_cb fn,
                                          int result, bt_adapter_device_discovery_state_e state,
                                          bt_adapter_device_discovery_info_s* info,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, state, copy(info));
    }

    // Existing plugins rely on a class mask that repeats the major class and an appearance of 0.
    static std::shared_ptr<bt_adapter_device_discovery_info_s> copy(
        bt_adapter_device_discovery_info_s* info) {
        // Written out, because __PRETTY_FUNCTION__ of a static member begins with "static ".
        ApiTracker tracker(
            "std::shared_ptr<bt_adapter_device_discovery_info_s> "
            "BtAdapterDeviceDiscoveryStateChangedCb::copy(bt_adapter_device_discovery_info_s*)",
            __LINE__);
        using namespace record_buffers;
        using Record = bt_adapter_device_discovery_info_s;
        std::shared_ptr<Record> copied(new Record{}, [](Record* record) {
            freeString(record->remote_address);
            freeString(record->remote_name);
            freeStrings(record->service_uuid, record->service_count);
            freeBytes(record->manufacturer_data);
            delete record;
        });
        copied->remote_address = copyString(info->remote_address);
        copied->remote_name = copyString(info->remote_name);
        copied->bt_class.major_device_class = info->bt_class.major_device_class;
        copied->bt_class.minor_device_class = info->bt_class.minor_device_class;
        copied->bt_class.major_service_class_mask = info->bt_class.major_device_class;
        copied->rssi = info->rssi;
        copied->is_bonded = info->is_bonded;
        copied->service_count = info->service_count;
        copied->service_uuid = copyStrings(info->service_uuid, info->service_count);
        copied->manufacturer_data_len = info->manufacturer_data_len;
        copied->manufacturer_data = copyBytes(info->manufacturer_data, info->manufacturer_data_len);
        return copied;
    }
};

class BtAgScoStateChangedCb : public CallbackImpl<bt_ag_sco_state_changed_cb, int, bool> {
    EVENT_SOURCE(BtAgScoStateChangedCb, bt_ag_set_sco_state_changed_cb,
                 bt_ag_unset_sco_state_changed_cb)

    std::function<void()> getInvokingTask(bt_ag_sco_state_changed_cb fn, int result, bool opened,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, opened);
    }
};

class BtAgSpeakerGainChangedCb : public CallbackImpl<bt_ag_speaker_gain_changed_cb, int> {
    EVENT_SOURCE(BtAgSpeakerGainChangedCb, bt_ag_set_speaker_gain_changed_cb,
                 bt_ag_unset_speaker_gain_changed_cb)

    std::function<void()> getInvokingTask(bt_ag_speaker_gain_changed_cb fn, int gain,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, gain);
    }
};

class BtAudioStateChangedCb
    : public CallbackImpl<bt_a2dp_source_audio_state_changed_cb, bt_a2dp_source_audio_state_e,
                          const std::string&> {
    EVENT_SOURCE(BtAudioStateChangedCb, bt_audio_set_audio_state_changed_cb,
                 bt_audio_unset_audio_state_changed_cb)

    std::function<void()> getInvokingTask(bt_a2dp_source_audio_state_changed_cb fn,
                                          bt_a2dp_source_audio_state_e state,
                                          const std::string& address, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, state, address);
    }
};

class BtAudioConnectionStateChangedCb
    : public CallbackImpl<bt_audio_connection_state_changed_cb, int, bool, const std::string&,
                          bt_audio_profile_type_e> {
    EVENT_SOURCE(BtAudioConnectionStateChangedCb, bt_audio_set_connection_state_changed_cb,
                 bt_audio_unset_connection_state_changed_cb)

    std::function<void()> getInvokingTask(bt_audio_connection_state_changed_cb fn, int result,
                                          bool connected, const std::string& address,
                                          bt_audio_profile_type_e profile,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, connected, address, profile);
    }
};

class BtAudioSlcStateChangedCb
    : public CallbackImpl<bt_audio_slc_state_changed_cb, bool, const std::string&> {
    EVENT_SOURCE(BtAudioSlcStateChangedCb, bt_audio_set_slc_state_changed_cb,
                 bt_audio_unset_slc_state_changed_cb)

    std::function<void()> getInvokingTask(bt_audio_slc_state_changed_cb fn, bool connected,
                                          const std::string& address, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, connected, address);
    }
};

class BtAvrcpAbsoluteVolumeChangedCb
    : public CallbackImpl<bt_avrcp_absolute_volume_changed_cb, const std::string&, unsigned short> {
    EVENT_SOURCE(BtAvrcpAbsoluteVolumeChangedCb, bt_avrcp_set_absolute_volume_changed_cb,
                 bt_avrcp_unset_absolute_volume_changed_cb)

    std::function<void()> getInvokingTask(bt_avrcp_absolute_volume_changed_cb fn,
                                          const std::string& address, unsigned short volume,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, address, volume);
    }
};

class BtAvrcpInterimVolumeNotifyCb
    : public CallbackImpl<bt_avrcp_interim_volume_notify_cb, const std::string&, unsigned short> {
    EVENT_SOURCE(BtAvrcpInterimVolumeNotifyCb, bt_avrcp_set_interim_volume_notify_cb,
                 bt_avrcp_unset_interim_volume_notify_cb)

    std::function<void()> getInvokingTask(bt_avrcp_interim_volume_notify_cb fn,
                                          const std::string& address, unsigned short volume,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, address, volume);
    }
};

class BtAvrcpKeyEventReceivedCb
    : public CallbackImpl<bt_avrcp_key_event_received_cb, bt_avrcp_key_event_s*> {
    EVENT_SOURCE(BtAvrcpKeyEventReceivedCb, bt_avrcp_set_key_event_received_cb,
                 bt_avrcp_unset_key_event_received_cb)

    std::function<void()> getInvokingTask(bt_avrcp_key_event_received_cb fn,
                                          bt_avrcp_key_event_s* event, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, std::make_shared<bt_avrcp_key_event_s>(*event));
    }
};

class BtAvrcpMuteStateChangedWithAddressCb
    : public CallbackImpl<bt_avrcp_mute_state_changed_with_address_cb, const std::string&, bool> {
    EVENT_SOURCE(BtAvrcpMuteStateChangedWithAddressCb,
                 bt_avrcp_set_mute_state_changed_with_address_cb,
                 bt_avrcp_unset_mute_state_changed_with_address_cb)

    std::function<void()> getInvokingTask(bt_avrcp_mute_state_changed_with_address_cb fn,
                                          const std::string& address, bool muted,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, address, muted);
    }
};

class BtAvrcpRemoteFeaturesCb
    : public CallbackImpl<bt_avrcp_remote_features_cb, bt_avrcp_remote_features_s*> {
    EVENT_SOURCE(BtAvrcpRemoteFeaturesCb, bt_avrcp_set_remote_features_cb,
                 bt_avrcp_unset_remote_features_cb)

    std::function<void()> getInvokingTask(bt_avrcp_remote_features_cb fn,
                                          bt_avrcp_remote_features_s* features,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return [fn, userData, copied = copy(features)] {
            LOGI("remote addr : %s, service name : %s, provider name : %s, feature : %d",
                 copied->remote_address, copied->service_name, copied->provider_name,
                 copied->feature);
            fn(copied.get(), userData);
        };
    }

    static std::shared_ptr<bt_avrcp_remote_features_s> copy(bt_avrcp_remote_features_s* features) {
        using namespace record_buffers;
        using Record = bt_avrcp_remote_features_s;
        std::shared_ptr<Record> copied(new Record{}, [](Record* record) {
            freeString(record->remote_address);
            freeString(record->service_name);
            freeString(record->provider_name);
            delete record;
        });
        copied->remote_address = copyString(features->remote_address);
        copied->feature = features->feature;
        copied->service_name = copyString(features->service_name);
        copied->provider_name = copyString(features->provider_name);
        return copied;
    }
};

class BtAvrcpVolumeChangedCb : public CallbackImpl<bt_avrcp_volume_changed_cb, unsigned short> {
    EVENT_SOURCE(BtAvrcpVolumeChangedCb, bt_avrcp_set_volume_changed_cb,
                 bt_avrcp_unset_volume_changed_cb)

    std::function<void()> getInvokingTask(bt_avrcp_volume_changed_cb fn, unsigned short volume,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, volume);
    }
};

class BtAvrcpVolumeChangedWithAddressCb
    : public CallbackImpl<bt_avrcp_volume_changed_with_address_cb, const std::string&,
                          unsigned short> {
    EVENT_SOURCE(BtAvrcpVolumeChangedWithAddressCb, bt_avrcp_set_volume_changed_with_address_cb,
                 bt_avrcp_unset_volume_changed_with_address_cb)

    std::function<void()> getInvokingTask(bt_avrcp_volume_changed_with_address_cb fn,
                                          const std::string& address, unsigned short volume,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, address, volume);
    }
};

class BtAvrcpVolumeNotifyCb : public CallbackImpl<bt_avrcp_volume_notified_cb> {
    EVENT_SOURCE(BtAvrcpVolumeNotifyCb, bt_avrcp_set_volume_notify_cb,
                 bt_avrcp_unset_volume_notify_cb)

    std::function<void()> getInvokingTask(bt_avrcp_volume_notified_cb fn, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData);
    }
};

class BtDeviceAuthEventCb : public CallbackImpl<bt_device_auth_event_cb, int, const std::string&,
                                                const std::string&, bt_profile_service_id_e> {
    EVENT_SOURCE(BtDeviceAuthEventCb, bt_device_set_auth_event_cb, bt_device_unset_auth_event_cb)

    std::function<void()> getInvokingTask(bt_device_auth_event_cb fn, int result,
                                          const std::string& name, const std::string& address,
                                          bt_profile_service_id_e service,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, name, address, service);
    }
};

class BtDeviceBondCreatedCb
    : public CallbackImpl<bt_device_bond_created_cb, int, bt_device_info_s*> {
    EVENT_SOURCE(BtDeviceBondCreatedCb, bt_device_set_bond_created_cb,
                 bt_device_unset_bond_created_cb)

    std::function<void()> getInvokingTask(bt_device_bond_created_cb fn, int result,
                                          bt_device_info_s* info, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, DeviceInfoCopy::copy(info));
    }
};

class BtDeviceBondDestroyedCb
    : public CallbackImpl<bt_device_bond_destroyed_cb, int, const std::string&> {
    EVENT_SOURCE(BtDeviceBondDestroyedCb, bt_device_set_bond_destroyed_cb,
                 bt_device_unset_bond_destroyed_cb)

    std::function<void()> getInvokingTask(bt_device_bond_destroyed_cb fn, int result,
                                          const std::string& address, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, address);
    }
};

class BtDeviceConnectionStateChangedCb : public CallbackImpl<bt_device_connection_state_changed_cb,
                                                             bool, bt_device_connection_info_s*> {
    EVENT_SOURCE(BtDeviceConnectionStateChangedCb, bt_device_set_connection_state_changed_cb,
                 bt_device_unset_connection_state_changed_cb)

    std::function<void()> getInvokingTask(bt_device_connection_state_changed_cb fn, bool connected,
                                          bt_device_connection_info_s* info,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        auto copied = std::make_shared<bt_device_connection_info_s>();
        copied->link = info->link;
        copied->disconn_reason = info->disconn_reason;
        std::function<void()> task = [fn, connected, copied, userData] {
            LOGI("addr : %s, link : %d, disc reason : %d", copied->remote_address, copied->link,
                 copied->disconn_reason);
            fn(connected, copied.get(), userData);
            free(copied->remote_address);
        };
        // Copied only when the task exists, because the task frees the address. A task that never
        // runs leaks it.
        copied->remote_address = record_buffers::copyString(info->remote_address);
        return task;
    }
};

class BtDeviceServiceSearchedCb
    : public CallbackImpl<bt_device_service_searched_cb, int, bt_device_sdp_info_s*> {
    EVENT_SOURCE(BtDeviceServiceSearchedCb, bt_device_set_service_searched_cb,
                 bt_device_unset_service_searched_cb)

    std::function<void()> getInvokingTask(bt_device_service_searched_cb fn, int result,
                                          bt_device_sdp_info_s* info, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, copy(info));
    }

    static std::shared_ptr<bt_device_sdp_info_s> copy(bt_device_sdp_info_s* info) {
        using namespace record_buffers;
        using Record = bt_device_sdp_info_s;
        std::shared_ptr<Record> copied(new Record{}, [](Record* record) {
            freeString(record->remote_address);
            freeStrings(record->service_uuid, record->service_count);
            delete record;
        });
        copied->remote_address = copyString(info->remote_address);
        copied->service_count = info->service_count;
        copied->service_uuid = copyStrings(info->service_uuid, info->service_count);
        return copied;
    }
};

class BtGattConnectionStateChangedCb
    : public CallbackImpl<bt_gatt_connection_state_changed_cb, int, bool, const std::string&> {
    EVENT_SOURCE(BtGattConnectionStateChangedCb, bt_gatt_set_connection_state_changed_cb,
                 bt_gatt_unset_connection_state_changed_cb)

    std::function<void()> getInvokingTask(bt_gatt_connection_state_changed_cb fn, int result,
                                          bool connected, const std::string& address,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, connected, address);
    }
};

class BtHidBrekSwitchChargingStatusReceivedCb
    : public CallbackImpl<bt_hid_notify_battery_charging_status_received_cb, unsigned char,
                          unsigned char> {
    EVENT_SOURCE(BtHidBrekSwitchChargingStatusReceivedCb,
                 bt_hid_set_brek_switch_charging_status_received_cb,
                 bt_hid_unset_brek_switch_charging_status_received_cb)

    std::function<void()> getInvokingTask(bt_hid_notify_battery_charging_status_received_cb fn,
                                          unsigned char level, unsigned char charging,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, level, charging);
    }
};

class BtHidBrekSwitchConnectionStateChangedCb
    : public CallbackImpl<bt_hid_brek_switch_connection_state_changed_cb, bool, bt_device_info_s*> {
    EVENT_SOURCE(BtHidBrekSwitchConnectionStateChangedCb,
                 bt_hid_set_brek_switch_connection_state_changed_cb,
                 bt_hid_unset_brek_switch_connection_state_changed_cb)

    std::function<void()> getInvokingTask(bt_hid_brek_switch_connection_state_changed_cb fn,
                                          bool connected, bt_device_info_s* info,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, connected, DeviceInfoCopy::copy(info));
    }
};

class BtHidBrekSwitchFirmwareUpdateStateChangedCb
    : public CallbackImpl<bt_hid_brek_switch_firmware_update_state_changed_cb, int> {
    EVENT_SOURCE(BtHidBrekSwitchFirmwareUpdateStateChangedCb,
                 bt_hid_set_brek_switch_firmware_update_state_changed_cb,
                 bt_hid_unset_brek_switch_firmware_update_state_changed_cb)

    std::function<void()> getInvokingTask(bt_hid_brek_switch_firmware_update_state_changed_cb fn,
                                          int state, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, state);
    }
};

class BtHidBatteryStatusReceivedCb
    : public CallbackImpl<bt_hid_notify_battery_status_received_cb, bt_hid_battery_status_info_s*> {
    EVENT_SOURCE(BtHidBatteryStatusReceivedCb, bt_hid_set_battery_status_received_cb,
                 bt_hid_unset_battery_status_received_cb)

    std::function<void()> getInvokingTask(bt_hid_notify_battery_status_received_cb fn,
                                          bt_hid_battery_status_info_s* status,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, copy(status));
    }

    // The platform's address buffer always has this size.
    static constexpr int ADDRESS_SIZE = sizeof "00:00:00:00:00:00";

    static std::shared_ptr<bt_hid_battery_status_info_s> copy(
        bt_hid_battery_status_info_s* status) {
        using namespace record_buffers;
        using Record = bt_hid_battery_status_info_s;
        std::shared_ptr<Record> copied(new Record{}, [](Record* record) {
            freeBytes(record->address);
            delete record;
        });
        copied->address = copyBytes(status->address, ADDRESS_SIZE);
        copied->address[ADDRESS_SIZE - 1] = '\0';
        copied->status = status->status;
        LOGD("%s, %d", copied->address, copied->status);
        return copied;
    }
};

class BtHidSmartRcChargingStatusReceivedCb
    : public CallbackImpl<bt_hid_notify_smart_rc_charging_status_received_cb, unsigned char,
                          unsigned char> {
    EVENT_SOURCE(BtHidSmartRcChargingStatusReceivedCb,
                 bt_hid_set_smart_rc_charging_status_received_cb,
                 bt_hid_unset_smart_rc_charging_status_received_cb)

    std::function<void()> getInvokingTask(bt_hid_notify_smart_rc_charging_status_received_cb fn,
                                          unsigned char level, unsigned char charging,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, level, charging);
    }
};

class BtHidSmartRcConnectionCb
    : public CallbackImpl<bt_hid_notify_smart_rc_connection_cb, bool, bt_device_info_s*> {
    EVENT_SOURCE(BtHidSmartRcConnectionCb, bt_hid_set_smart_rc_connection_cb,
                 bt_hid_unset_smart_rc_connection_cb)

    std::function<void()> getInvokingTask(bt_hid_notify_smart_rc_connection_cb fn, bool connected,
                                          bt_device_info_s* info, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, connected, DeviceInfoCopy::copy(info));
    }
};

class BtHidSmartRCfwUpdateStatusCb
    : public CallbackImpl<bt_hid_notify_smart_rc_fw_update_status_cb, int, unsigned char> {
    EVENT_SOURCE(BtHidSmartRCfwUpdateStatusCb, bt_hid_set_smart_rc_fw_update_status_cb,
                 bt_hid_unset_smart_rc_fw_update_status_cb)

    std::function<void()> getInvokingTask(bt_hid_notify_smart_rc_fw_update_status_cb fn, int status,
                                          unsigned char progress, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, status, progress);
    }
};

class BtHidSmartRcGripSensorDetectedCb
    : public CallbackImpl<bt_hid_smart_rc_grip_sensor_detected_cb, unsigned char> {
    EVENT_SOURCE(BtHidSmartRcGripSensorDetectedCb, bt_hid_set_smart_rc_grip_sensor_detected_cb,
                 bt_hid_unset_smart_rc_grip_sensor_detected_cb)

    std::function<void()> getInvokingTask(bt_hid_smart_rc_grip_sensor_detected_cb fn,
                                          unsigned char detected, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, detected);
    }
};

class BtHidSmartRcGripSensorStateChangedCb
    : public CallbackImpl<bt_hid_smart_rc_grip_sensor_state_changed_cb,
                          bt_hid_sc_grip_sensor_state_e> {
    EVENT_SOURCE(BtHidSmartRcGripSensorStateChangedCb,
                 bt_hid_set_smart_rc_grip_sensor_state_changed_cb,
                 bt_hid_unset_smart_rc_grip_sensor_state_changed_cb)

    std::function<void()> getInvokingTask(bt_hid_smart_rc_grip_sensor_state_changed_cb fn,
                                          bt_hid_sc_grip_sensor_state_e state,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, state);
    }
};

class BtLeAudioBroadcastStateChangedCb
    : public CallbackImpl<bt_le_audio_broadcast_state_changed_cb, bt_le_audio_broadcast_state_e,
                          bt_audio_stream_type_s> {
    EVENT_SOURCE(BtLeAudioBroadcastStateChangedCb, bt_le_audio_broadcast_set_state_changed_cb,
                 bt_le_audio_broadcast_unset_state_changed_cb)

    std::function<void()> getInvokingTask(bt_le_audio_broadcast_state_changed_cb fn,
                                          bt_le_audio_broadcast_state_e state,
                                          bt_audio_stream_type_s streamType,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, state, streamType);
    }
};

class BtSocketConnectionStateChangedCb
    : public CallbackImpl<bt_socket_connection_state_changed_cb, int, bt_socket_connection_state_e,
                          bt_socket_connection_s*> {
    EVENT_SOURCE(BtSocketConnectionStateChangedCb, bt_socket_set_connection_state_changed_cb,
                 bt_socket_unset_connection_state_changed_cb)

    std::function<void()> getInvokingTask(bt_socket_connection_state_changed_cb fn, int result,
                                          bt_socket_connection_state_e state,
                                          bt_socket_connection_s* connection,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, result, state, copy(connection));
    }

    static std::shared_ptr<bt_socket_connection_s> copy(bt_socket_connection_s* connection) {
        using namespace record_buffers;
        using Record = bt_socket_connection_s;
        std::shared_ptr<Record> copied(new Record{}, [](Record* record) {
            freeString(record->remote_address);
            freeString(record->service_uuid);
            delete record;
        });
        copied->socket_fd = connection->socket_fd;
        copied->server_fd = connection->server_fd;
        copied->local_role = connection->local_role;
        copied->remote_address = copyString(connection->remote_address);
        copied->service_uuid = copyString(connection->service_uuid);
        return copied;
    }
};

class BtSocketDataReceivedCb
    : public CallbackImpl<bt_socket_data_received_cb, bt_socket_received_data_s*> {
    EVENT_SOURCE(BtSocketDataReceivedCb, bt_socket_set_data_received_cb,
                 bt_socket_unset_data_received_cb)

    std::function<void()> getInvokingTask(bt_socket_data_received_cb fn,
                                          bt_socket_received_data_s* data,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, copy(data));
    }

    static std::shared_ptr<bt_socket_received_data_s> copy(bt_socket_received_data_s* data) {
        using namespace record_buffers;
        using Record = bt_socket_received_data_s;
        std::shared_ptr<Record> copied(new Record{}, [](Record* record) {
            freeBytes(record->data);
            delete record;
        });
        copied->socket_fd = data->socket_fd;
        copied->data_size = data->data_size;
        copied->data = copyBytes(data->data, data->data_size);
        return copied;
    }
};
