// Discovery: its start and end, and the devices it finds. It counts whoever asked
// BlueZ for it.
#include "platform/host/bluetooth/bluez/reporters/DiscoveryReporter.h"

#include <bluetooth.h>

#include <memory>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

bool isDiscovering(const BluezObjects& objects) {
    return propertyOr<bool>(objects.find(objects.adapterPath(), adapterInterface), "Discovering");
}

void deliver(bt_adapter_device_discovery_state_e state, const Properties* device) {
    LentDevice lent(device);
    const auto info = std::make_unique<bt_adapter_device_discovery_info_s>();
    info->remote_address = lent.address.get();
    info->remote_name = lent.name.get();
    info->bt_class = classOf(device);
    info->rssi = propertyOr<std::int16_t>(device, "RSSI");
    info->is_bonded = propertyOr<bool>(device, "Paired");
    info->service_uuid = lent.uuids.get();
    info->service_count = lent.uuids.count();
    info->appearance = propertyOr<std::uint16_t>(device, "Appearance");
    info->manufacturer_data_len = lent.manufacturerData.count();
    info->manufacturer_data = lent.manufacturerData.get();
    slotOf<&bt_adapter_set_device_discovery_state_changed_cb>.deliver(0, state, info.get());
}

}  // namespace

void DiscoveryReporter::onChange(const Change& change) {
    if (change.interface == adapterInterface) {
        onAdapter(change);
    } else if (change.interface == deviceInterface && change.now != nullptr) {
        onDevice(change);
    }
}

void DiscoveryReporter::onSnapshot(const BluezObjects& objects) {
    m_discovering = isDiscovering(objects);
}

void DiscoveryReporter::onAdapter(const Change& change) {
    const bool discovering = isDiscovering(change.objects);
    if (discovering == m_discovering) {
        return;
    }
    m_discovering = discovering;
    if (discovering && change.before == nullptr) {
        return;  // it had begun before the adapter was seen
    }
    deliver(
        discovering ? BT_ADAPTER_DEVICE_DISCOVERY_STARTED : BT_ADAPTER_DEVICE_DISCOVERY_FINISHED,
        nullptr);
}

// A device is found when it appears, and again whenever a new strength of its signal
// comes.
void DiscoveryReporter::onDevice(const Change& change) const {
    const bool isNew = change.before == nullptr;
    const bool isHeard = !isNew && changedTo<std::int16_t>(change, "RSSI") != nullptr;
    if (m_discovering && (isNew || isHeard) &&
        propertyOr<std::string>(change.now, "Adapter") == change.objects.adapterPath()) {
        deliver(BT_ADAPTER_DEVICE_DISCOVERY_FOUND, change.now);
    }
}

}  // namespace corvane::host
