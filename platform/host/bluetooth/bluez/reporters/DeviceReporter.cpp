// The connections of devices, and the services found on them.
#include "platform/host/bluetooth/bluez/reporters/DeviceReporter.h"

#include <bluetooth.h>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/bluetooth/bluez/bus/BluezPeer.h"
#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

// The reason of a disconnection isn't on the bus.
void reportConnection(const Properties* device, bool connected) {
    const LentDevice lent(device);
    bt_device_connection_info_s info{lent.address.get(), linkOf(device),
                                     BT_DEVICE_DISCONNECT_REASON_UNKNOWN};
    slotOf<&bt_device_set_connection_state_changed_cb>.deliver(connected, &info);
}

void reportServices(const Properties* device) {
    LentDevice lent(device);
    bt_device_sdp_info_s info{lent.address.get(), lent.uuids.get(), lent.uuids.count()};
    slotOf<&bt_device_set_service_searched_cb>.deliver(0, &info);
}

}  // namespace

void DeviceReporter::onChange(const Change& change) {
    if (change.interface != deviceInterface) {
        return;
    }
    if (change.before == nullptr) {
        onAdded(*change.now);
        return;
    }
    const bool wasConnected = propertyOr<bool>(change.before, "Connected");
    const bool isConnected = propertyOr<bool>(change.now, "Connected");
    const auto* const resolved = changedTo<bool>(change, "ServicesResolved");
    const bool isResolved = resolved != nullptr && *resolved;
    if (isResolved && !isConnected) {
        checkConnected(change.path);
    }
    if (isConnected != wasConnected) {
        reportConnection(change.now == nullptr ? change.before : change.now, isConnected);
    }
    if (isResolved) {
        reportServices(change.now);
    }
}

// A stranger that connects to this side appears already connected. A bonded device may
// be one that BlueZ, started anew, has remembered.
void DeviceReporter::onAdded(const Properties& device) {
    if (propertyOr<bool>(&device, "Connected") && !propertyOr<bool>(&device, "Paired")) {
        reportConnection(&device, true);
    }
}

// When this side connects over LE, BlueZ may never say so.
void DeviceReporter::checkConnected(const std::string& path) {
    m_peer.get(path, deviceInterface, "Connected", [this, path](sd_bus_message* answer) {
        int connected = 0;
        if (answer != nullptr) {
            checked(sd_bus_message_read(answer, "v", "b", &connected));
        }
        if (connected != 0) {
            m_objects.change(path, std::string(deviceInterface), {{"Connected", true}}, {});
        }
    });
}

}  // namespace corvane::host
