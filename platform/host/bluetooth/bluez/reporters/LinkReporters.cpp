// What a device is connected for: GATT over LE, or as an input device.
#include "platform/host/bluetooth/bluez/reporters/LinkReporters.h"

#include <bluetooth.h>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

void LinkReporter::onChange(const Change& change) {
    auto path = change.path;
    if (change.interface == gattServiceInterface) {
        path = propertyOr<std::string>(change.now, "Device");
    } else if (change.interface != deviceInterface) {
        return;
    }
    const auto address = change.objects.addressOf(path);
    const bool connected = isConnected(change.objects, path);
    const bool isChanged = m_connected.set(path, connected);
    if (isChanged && !change.isFound) {
        deliver(connected, address);
    }
}

void LinkReporter::onSnapshot(const BluezObjects& objects) {
    m_connected.clear();
    objects.forEach(deviceInterface, [&](const std::string& path, const Properties&) {
        m_connected.set(path, isConnected(objects, path));
    });
}

bool LinkReporter::isConnected(const BluezObjects& objects, const std::string& path) const {
    const auto* const device = objects.find(path, deviceInterface);
    return propertyOr<bool>(device, "Connected") &&
           (m_connected.contains(path) || isProved(objects, path, *device));
}

bool GattReporter::isProved(const BluezObjects& objects, const std::string& path,
                            const Properties& device) const {
    bool hasService = propertyOr<bool>(&device, "ServicesResolved");
    objects.forEach(gattServiceInterface, [&](const std::string&, const Properties& service) {
        hasService = hasService || propertyOr<std::string>(&service, "Device") == path;
    });
    return hasService && linkOf(&device) == BT_DEVICE_LINK_LE;
}

void GattReporter::deliver(bool connected, const std::string& address) const {
    slotOf<&bt_gatt_set_connection_state_changed_cb>.deliver(0, connected, address.c_str());
}

bool HidReporter::isProved(const BluezObjects&, const std::string&,
                           const Properties& device) const {
    return propertyOr<bool>(&device, "ServicesResolved") &&
           (offers(&device, Service::HumanInterface) ||
            offers(&device, Service::HumanInterfaceOverGatt));
}

void HidReporter::deliver(bool connected, const std::string& address) const {
    slotOf<&bt_hid_host_initialize>.deliver(0, connected, address.c_str());
}

}  // namespace corvane::host
