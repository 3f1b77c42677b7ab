// The charge of devices.
#include "platform/host/bluetooth/bluez/reporters/BatteryReporter.h"

#include <bluetooth_tv.h>

#include <algorithm>
#include <cstddef>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

void BatteryReporter::onChange(const Change& change) {
    if (change.interface != batteryInterface || change.isFound) {
        return;
    }
    const auto* const percentage = changedTo<std::uint8_t>(change, "Percentage");
    if (percentage == nullptr) {
        return;
    }
    // Whoever is called may read as many bytes as an address has, whatever is in it.
    constexpr std::size_t addressSize = 18;
    auto address = change.objects.addressOf(change.path);
    address.resize(std::max(address.size(), addressSize));
    bt_hid_battery_status_info_s status{*percentage, address.data()};
    slotOf<&bt_hid_set_battery_status_received_cb>.deliver(&status);
}

}  // namespace corvane::host
