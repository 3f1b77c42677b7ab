// Bonds with devices.
#include "platform/host/bluetooth/bluez/reporters/BondReporter.h"

#include <bluetooth.h>

#include <memory>
#include <utility>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/bluetooth/bluez/bus/BluezPeer.h"
#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

void reportCreated(const Properties* device) {
    LentDevice lent(device);
    const auto info = std::make_unique<bt_device_info_s>();
    info->remote_address = lent.address.get();
    info->remote_name = lent.name.get();
    info->bt_class = classOf(device);
    info->service_uuid = lent.uuids.get();
    info->service_count = lent.uuids.count();
    info->is_bonded = true;
    info->is_connected = propertyOr<bool>(device, "Connected");
    info->is_authorized = propertyOr<bool>(device, "Trusted");
    info->manufacturer_data_len = lent.manufacturerData.count();
    info->manufacturer_data = lent.manufacturerData.get();
    slotOf<&bt_device_set_bond_created_cb>.deliver(0, info.get());
}

// cppcheck-suppress passedByValue ; the callback may write to what it is lent
void reportDestroyed(std::string address) {
    slotOf<&bt_device_set_bond_destroyed_cb>.deliver(0, address.data());
}

}  // namespace

void BondReporter::onChange(const Change& change) {
    if (change.interface != deviceInterface || change.before == nullptr) {
        return;
    }
    const bool wasPaired = propertyOr<bool>(change.before, "Paired");
    if (change.now == nullptr) {
        if (wasPaired) {
            onRemoved(*change.before);
        }
        return;
    }
    const bool isPaired = propertyOr<bool>(change.now, "Paired");
    if (isPaired && !wasPaired) {
        reportCreated(change.now);
    } else if (wasPaired && !isPaired) {
        reportDestroyed(propertyOr<std::string>(change.now, "Address"));
    }
}

// BlueZ forgets its devices also when the adapter is unplugged or BlueZ itself ends, and
// then the bonds last. It does that at one go, so an answer about the adapter comes only
// if the device alone was removed.
void BondReporter::onRemoved(const Properties& device) {
    m_peer.get(propertyOr<std::string>(&device, "Adapter"), adapterInterface, "Address",
               [address = propertyOr<std::string>(&device, "Address")](sd_bus_message* answer) {
                   if (answer != nullptr) {
                       reportDestroyed(address);
                   }
               });
}

}  // namespace corvane::host
