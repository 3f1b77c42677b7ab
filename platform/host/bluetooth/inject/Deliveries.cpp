// How an injected event reaches its callback.
#include "Deliveries.h"

#include "CallbackSlot.h"
#include "LentMemory.h"

#include <bluetooth.h>

#include <memory>
#include <string>

namespace corvane::host {

namespace {

LentText lentText(const Values& values, const char* name) {
    return LentText(values.get<std::string>(name));
}

bt_class_s deviceClass(const Values& values) {
    return {values.get<int>("major_device_class"), values.get<int>("minor_device_class"),
            values.get<int>("major_service_class_mask")};
}

unsigned adapterStateChanged(const Values& values) {
    return slotOf<&bt_adapter_set_state_changed_cb>.deliver(
        values.get<int>("result"), values.enumeration<bt_adapter_state_e>("state"));
}

unsigned adapterNameChanged(const Values& values) {
    return slotOf<&bt_adapter_set_name_changed_cb>.deliver(lentText(values, "name").get());
}

unsigned adapterSspConsentRequest(const Values& values) {
    return slotOf<&bt_adapter_set_ssp_consent_request_cb>.deliver(
        values.get<int>("result"), lentText(values, "name").get(),
        lentText(values, "address").get());
}

unsigned adapterAuthenticationRequest(const Values& values) {
    return slotOf<&bt_adapter_set_authentication_req_cb>.deliver(
        values.get<int>("result"), values.enumeration<bt_authentication_type_info_e>("type"),
        lentText(values, "name").get(), lentText(values, "address").get(),
        lentText(values, "key").get());
}

unsigned adapterMaxDeviceConnected(const Values& values) {
    return slotOf<&bt_adapter_set_max_device_connected_cb>.deliver(
        values.get<int>("result"), lentText(values, "address").get());
}

unsigned adapterDiscoveryStateChanged(const Values& values) {
    const auto state = values.enumeration<bt_adapter_device_discovery_state_e>("state");
    const bool isFound = state == BT_ADAPTER_DEVICE_DISCOVERY_FOUND;
    const LentText address(isFound ? values.get<std::string>("remote_address") : "");
    const LentText name(isFound ? values.get<std::string>("remote_name") : "");
    LentTexts uuids(values.get<Uuids>("service_uuid"));
    LentBytes manufacturerData(values.get<Bytes>("manufacturer_data"));

    const auto info = std::make_unique<bt_adapter_device_discovery_info_s>();
    info->remote_address = address.get();
    info->remote_name = name.get();
    if (isFound) {
        info->bt_class = deviceClass(values);
        info->rssi = values.get<int>("rssi");
        info->is_bonded = values.get<bool>("is_bonded");
        info->service_uuid = uuids.get();
        info->service_count = uuids.count();
        info->appearance = values.get<int>("appearance");
        info->manufacturer_data_len = manufacturerData.count();
        info->manufacturer_data = manufacturerData.get();
    }
    return slotOf<&bt_adapter_set_device_discovery_state_changed_cb>.deliver(
        values.get<int>("result"), state, info.get());
}

unsigned deviceAuthEvent(const Values& values) {
    return slotOf<&bt_device_set_auth_event_cb>.deliver(
        values.get<int>("result"), lentText(values, "name").get(),
        lentText(values, "address").get(), values.enumeration<bt_profile_service_id_e>("service"));
}

unsigned deviceBondCreated(const Values& values) {
    const auto address = lentText(values, "remote_address");
    const auto name = lentText(values, "remote_name");
    LentTexts uuids(values.get<Uuids>("service_uuid"));
    LentBytes manufacturerData(values.get<Bytes>("manufacturer_data"));

    const auto info = std::make_unique<bt_device_info_s>();
    info->remote_address = address.get();
    info->remote_name = name.get();
    info->bt_class = deviceClass(values);
    info->service_uuid = uuids.get();
    info->service_count = uuids.count();
    info->is_bonded = values.get<bool>("is_bonded");
    info->is_connected = values.get<bool>("is_connected");
    info->is_authorized = values.get<bool>("is_authorized");
    info->manufacturer_data_len = manufacturerData.count();
    info->manufacturer_data = manufacturerData.get();
    return slotOf<&bt_device_set_bond_created_cb>.deliver(
        values.get<int>("result"), values.get<bool>("present") ? info.get() : nullptr);
}

unsigned deviceBondDestroyed(const Values& values) {
    return slotOf<&bt_device_set_bond_destroyed_cb>.deliver(values.get<int>("result"),
                                                            lentText(values, "address").get());
}

unsigned deviceConnectionStateChanged(const Values& values) {
    const auto address = lentText(values, "remote_address");
    const auto info = std::make_unique<bt_device_connection_info_s>();
    info->remote_address = address.get();
    info->link = values.enumeration<bt_device_connection_link_type_e>("link");
    info->disconn_reason = values.enumeration<bt_device_disconnect_reason_e>("disconn_reason");
    return slotOf<&bt_device_set_connection_state_changed_cb>.deliver(values.get<bool>("connected"),
                                                                      info.get());
}

unsigned deviceServiceSearched(const Values& values) {
    const auto address = lentText(values, "remote_address");
    LentTexts uuids(values.get<Uuids>("service_uuid"));
    const auto info = std::make_unique<bt_device_sdp_info_s>();
    info->remote_address = address.get();
    info->service_uuid = uuids.get();
    info->service_count = uuids.count();
    return slotOf<&bt_device_set_service_searched_cb>.deliver(values.get<int>("result"),
                                                              info.get());
}

constexpr Delivery deliveries[] = {
    {"bt-adapter-state-changed", adapterStateChanged},
    {"bt-adapter-name-changed", adapterNameChanged},
    {"bt-adapter-ssp-conecnt-request", adapterSspConsentRequest},
    {"bt-adapter-authentication-req", adapterAuthenticationRequest},
    {"bt-adapter-max-device-connected", adapterMaxDeviceConnected},
    {"bt-adapter-device-discovery-state-changed", adapterDiscoveryStateChanged},
    {"bt-device-auth-event", deviceAuthEvent},
    {"bt-device-bond-created", deviceBondCreated},
    {"bt-device-bond-destroyed", deviceBondDestroyed},
    {"bt-device-connection-state-changed", deviceConnectionStateChanged},
    {"bt-device-service-searched", deviceServiceSearched},
};

}  // namespace

std::span<const Delivery> bluetoothDeliveries() {
    return deliveries;
}

}  // namespace corvane::host
