// The platform's numbers of services.
#include "platform/host/bluetooth/bluez/bus/ServiceIds.h"

#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"

namespace corvane::host {

namespace {

struct Row {
    Service service;
    bt_profile_service_id_e id;
};

constexpr Row table[] = {
    {Service::SerialPort, BT_PROFILE_SERVICE_SERIAL_PORT},
    {Service::AudioSource, BT_PROFILE_SERVICE_A2DP_SOURCE},
    {Service::AudioSink, BT_PROFILE_SERVICE_A2DP_SINK},
    {Service::RemoteControlTarget, BT_PROFILE_SERVICE_AVRCP_TARGET},
    {Service::RemoteControl, BT_PROFILE_SERVICE_AVRCP_CONTROL},
    {Service::RemoteControlController, BT_PROFILE_SERVICE_AVRCP_CONTROL},
    {Service::HandsFree, BT_PROFILE_SERVICE_HANDS_FREE},
    {Service::HandsFreeGateway, BT_PROFILE_SERVICE_HANDS_FREE},
    {Service::HumanInterface, BT_PROFILE_SERVICE_HID},
    {Service::HumanInterfaceOverGatt, BT_PROFILE_SERVICE_HID},
};

}  // namespace

bt_profile_service_id_e serviceId(const std::string& uuid, const Properties* device) {
    for (const auto& [service, id] : table) {
        if (isService(uuid, service)) {
            return id;
        }
    }
    // BlueZ asks for audio without its direction; this side is what the device isn't.
    if (isService(uuid, Service::AudioDistribution)) {
        if (offers(device, Service::AudioSink)) {
            return BT_PROFILE_SERVICE_A2DP_SOURCE;
        }
        if (offers(device, Service::AudioSource)) {
            return BT_PROFILE_SERVICE_A2DP_SINK;
        }
    }
    return BT_PROFILE_SERVICE_UNKNOWN;
}

}  // namespace corvane::host
