// What BlueZ publishes about a device and its services, as the platform's types.
#include "platform/host/bluez/bus/DeviceRecord.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace corvane::host {

namespace {

struct ServiceNumber {
    Service service;
    bt_profile_service_id_e id;
};

constexpr ServiceNumber SERVICE_NUMBERS[] = {
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

bt_class_s classOf(const Properties* device) {
    const auto number = propertyOr<std::uint32_t>(device, "Class");
    return {static_cast<int>(number >> 8 & 0x1f), static_cast<int>(number >> 2 & 0x3f),
            static_cast<int>(number >> 13 & 0x7ff)};
}

}  // namespace

bool isService(const std::string& uuid, Service service) {
    std::array<char, 37> wanted{};
    std::snprintf(wanted.data(), wanted.size(), "0000%04x-0000-1000-8000-00805f9b34fb",
                  static_cast<unsigned>(service));
    return strcasecmp(uuid.c_str(), wanted.data()) == 0;
}

bool offers(const Properties* device, Service service) {
    return std::ranges::any_of(
        propertyOr<std::vector<std::string>>(device, "UUIDs"),
        [service](const std::string& uuid) { return isService(uuid, service); });
}

bt_profile_service_id_e serviceId(const std::string& uuid, const Properties* device) {
    for (const auto& [service, id] : SERVICE_NUMBERS) {
        if (isService(uuid, service)) {
            return id;
        }
    }
    // BlueZ asks about audio without its direction. This side has the role that the device
    // does not have.
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

std::string nameOf(const Properties* device) {
    return propertyOr<std::string>(device, "Name", propertyOr<std::string>(device, "Alias"));
}

bt_device_connection_link_type_e linkOf(const Properties* device) {
    const bool isLe = propertyOr<std::string>(device, "AddressType") == "random" ||
                      device == nullptr || findProperty<std::uint32_t>(*device, "Class") == nullptr;
    return isLe ? BT_DEVICE_LINK_LE : BT_DEVICE_LINK_BREDR;
}

LentDevice::LentDevice(const Properties* device)
    : address(propertyOr<std::string>(device, "Address")),
      name(nameOf(device)),
      uuids(propertyOr<std::vector<std::string>>(device, "UUIDs")),
      manufacturerData(propertyOr<KeyedBytes>(device, "ManufacturerData")),
      classOfDevice(classOf(device)),
      isPaired(propertyOr<bool>(device, "Paired")) {}

}  // namespace corvane::host
