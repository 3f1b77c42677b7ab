// The connections of the remote-control profile (AVRCP), by the remote's role.
// BlueZ has one connection for both roles; which of them the remote plays follows
// from the services it offers, and those may be known only later.
#include "platform/host/bluetooth/bluez/reporters/RemoteControlReporter.h"

#include <bluetooth.h>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

bool update(PathSet& connected, const BluezObjects& objects, const std::string& path,
            Service role) {
    const bool isConnected =
        propertyOr<bool>(objects.find(path, mediaControlInterface), "Connected") &&
        (connected.contains(path) || offers(objects.find(path, deviceInterface), role));
    return connected.set(path, isConnected);
}

}  // namespace

void RemoteControlReporter::onChange(const Change& change) {
    if (change.interface != deviceInterface && change.interface != mediaControlInterface) {
        return;
    }
    const auto& path = change.path;
    const auto address = change.objects.addressOf(path);
    const bool isTarget = update(m_targets, change.objects, path, Service::RemoteControlTarget);
    const bool isController = update(m_controllers, change.objects, path, Service::RemoteControl);
    if (change.isFound) {
        return;
    }
    if (isTarget) {
        slotOf<&bt_avrcp_control_initialize>.deliver(m_targets.contains(path), address.c_str());
    }
    if (isController) {
        slotOf<&bt_avrcp_target_initialize>.deliver(m_controllers.contains(path), address.c_str());
    }
}

void RemoteControlReporter::onSnapshot(const BluezObjects& objects) {
    m_targets.clear();
    m_controllers.clear();
    objects.forEach(mediaControlInterface, [&](const std::string& path, const Properties&) {
        update(m_targets, objects, path, Service::RemoteControlTarget);
        update(m_controllers, objects, path, Service::RemoteControl);
    });
}

}  // namespace corvane::host
