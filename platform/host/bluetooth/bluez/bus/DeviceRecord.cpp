// What BlueZ tells of a device, in the shapes of the platform's records.
#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace corvane::host {

std::string nameOf(const Properties* device) {
    return propertyOr<std::string>(device, "Name", propertyOr<std::string>(device, "Alias"));
}

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

bt_device_connection_link_type_e linkOf(const Properties* device) {
    const bool isLe = propertyOr<std::string>(device, "AddressType") == "random" ||
                      device == nullptr || findProperty<std::uint32_t>(*device, "Class") == nullptr;
    return isLe ? BT_DEVICE_LINK_LE : BT_DEVICE_LINK_BREDR;
}

bt_class_s classOf(const Properties* device) {
    const auto number = propertyOr<std::uint32_t>(device, "Class");
    return {static_cast<int>(number >> 8 & 0x1f), static_cast<int>(number >> 2 & 0x3f),
            static_cast<int>(number >> 13 & 0x7ff)};
}

LentDevice::LentDevice(const Properties* device)
    : address(propertyOr<std::string>(device, "Address")),
      name(nameOf(device)),
      uuids(propertyOr<std::vector<std::string>>(device, "UUIDs")),
      manufacturerData(propertyOr<KeyedBytes>(device, "ManufacturerData")) {}

}  // namespace corvane::host
