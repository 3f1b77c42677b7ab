// The volume of audio connections. BlueZ has one number for all of it; who moved
// it follows from the direction of the sound.
#include "platform/host/bluetooth/bluez/reporters/VolumeReporter.h"

#include <bluetooth_tv.h>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

void VolumeReporter::onChange(const Change& change) {
    if (change.interface == mediaControlInterface) {
        onControl(change);
    } else if (change.interface == mediaTransportInterface && change.now != nullptr) {
        onTransport(change);
    }
}

void VolumeReporter::onControl(const Change& change) {
    const bool wasConnected = propertyOr<bool>(change.before, "Connected");
    const bool isConnected = propertyOr<bool>(change.now, "Connected");
    if (isConnected != wasConnected) {
        m_silent.set(change.path, isConnected && !change.isFound);
    }
}

void VolumeReporter::onTransport(const Change& change) {
    const auto* const volume = changedTo<std::uint16_t>(change, "Volume");
    if (volume == nullptr) {
        return;
    }
    const auto device = propertyOr<std::string>(change.now, "Device");
    const auto address = change.objects.addressOf(device);
    const auto uuid = propertyOr<std::string>(change.now, "UUID");
    const bool isSource = isService(uuid, Service::AudioSource);
    const bool isFirst = isSource && m_silent.set(device, false);
    if (!isFirst && change.before == nullptr) {
        return;  // it came with the transport, nobody moved it
    }
    if (isFirst) {
        slotOf<&bt_avrcp_set_interim_volume_notify_cb>.deliver(address.c_str(), *volume);
    } else if (isSource) {
        slotOf<&bt_avrcp_set_volume_changed_with_address_cb>.deliver(address.c_str(), *volume);
    } else if (isService(uuid, Service::AudioSink)) {
        slotOf<&bt_avrcp_set_absolute_volume_changed_cb>.deliver(address.c_str(), *volume);
    }
    if (propertyOr<std::string>(change.now, "State") == "active") {
        slotOf<&bt_avrcp_set_volume_changed_cb>.deliver(*volume);
    }
}

}  // namespace corvane::host
