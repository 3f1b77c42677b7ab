// Devices: their connections, services, bonds and battery levels.
#include <bluetooth.h>
#include <bluetooth_tv.h>

#include <algorithm>
#include <cstddef>

#include "platform/host/bluez/bus/BluezObjects.h"
#include "platform/host/bluez/bus/BluezPeer.h"
#include "platform/host/bluez/bus/DeviceRecord.h"
#include "platform/host/bluez/reporters/Reporters.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

class DeviceReporter : public BluezReporter {
public:
    DeviceReporter(BluezObjects& objects, BluezPeer& peer) : m_objects(objects), m_peer(peer) {}

    void onChange(const Change& change) override {
        if (change.interface != DEVICE_INTERFACE) {
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

private:
    // An unpaired device that appears connected has just connected to this side. A paired one
    // may have been connected all along, when BlueZ has restarted.
    static void onAdded(const Properties& device) {
        if (propertyOr<bool>(&device, "Connected") && !propertyOr<bool>(&device, "Paired")) {
            reportConnection(&device, true);
        }
    }

    // When this side connects over LE, BlueZ may not signal the change of Connected.
    void checkConnected(const std::string& path) {
        m_peer.get(path, DEVICE_INTERFACE, "Connected", [this, path](sd_bus_message* answer) {
            int connected = 0;
            if (answer != nullptr) {
                checked(sd_bus_message_read(answer, "v", "b", &connected));
            }
            if (connected != 0) {
                m_objects.change(path, std::string(DEVICE_INTERFACE), {{"Connected", true}}, {});
            }
        });
    }

    // BlueZ does not publish the reason of a disconnection.
    static void reportConnection(const Properties* device, bool connected) {
        const LentDevice lent(device);
        bt_device_connection_info_s info{lent.address.get(), linkOf(device),
                                         BT_DEVICE_DISCONNECT_REASON_UNKNOWN};
        slotOf<&bt_device_set_connection_state_changed_cb>.deliver(connected, &info);
    }

    static void reportServices(const Properties* device) {
        LentDevice lent(device);
        bt_device_sdp_info_s info{lent.address.get(), lent.uuids.get(), lent.uuids.count()};
        slotOf<&bt_device_set_service_searched_cb>.deliver(0, &info);
    }

    BluezObjects& m_objects;
    BluezPeer& m_peer;
};

class BondReporter : public BluezReporter {
public:
    explicit BondReporter(BluezPeer& peer) : m_peer(peer) {}

    void onChange(const Change& change) override {
        if (change.interface != DEVICE_INTERFACE || change.before == nullptr) {
            return;
        }
        const bool wasPaired = propertyOr<bool>(change.before, "Paired");
        const bool isPaired = propertyOr<bool>(change.now, "Paired");
        if (isPaired && !wasPaired) {
            reportCreated(change.now);
        } else if (wasPaired && change.now == nullptr) {
            onRemoved(*change.before);
        } else if (wasPaired && !isPaired) {
            reportDestroyed(propertyOr<std::string>(change.now, "Address"));
        }
    }

private:
    // BlueZ also removes its devices when the adapter is unplugged or BlueZ ends, and their
    // bonds remain. It then removes everything at once, so the adapter's answer arrives only
    // if the device alone was removed.
    void onRemoved(const Properties& device) {
        m_peer.get(propertyOr<std::string>(&device, "Adapter"), ADAPTER_INTERFACE, "Address",
                   [address = propertyOr<std::string>(&device, "Address")](sd_bus_message* answer) {
                       if (answer != nullptr) {
                           reportDestroyed(address);
                       }
                   });
    }

    static void reportCreated(const Properties* device) {
        LentDevice lent(device);
        const auto info = lent.makeRecord<bt_device_info_s>();
        info->is_connected = propertyOr<bool>(device, "Connected");
        info->is_authorized = propertyOr<bool>(device, "Trusted");
        slotOf<&bt_device_set_bond_created_cb>.deliver(0, info.get());
    }

    // cppcheck-suppress passedByValue ; the callback may write to the string
    static void reportDestroyed(std::string address) {
        slotOf<&bt_device_set_bond_destroyed_cb>.deliver(0, address.data());
    }

    BluezPeer& m_peer;
};

class BatteryReporter : public BluezReporter {
public:
    void onChange(const Change& change) override {
        if (change.interface != BATTERY_INTERFACE || change.isFound) {
            return;
        }
        const auto* const percentage = changedTo<std::uint8_t>(change, "Percentage");
        if (percentage == nullptr) {
            return;
        }
        // The callback may read 18 bytes, even if BlueZ gave no address.
        constexpr std::size_t addressSize = 18;
        auto address = change.objects.addressOf(change.path);
        address.resize(std::max(address.size(), addressSize));
        bt_hid_battery_status_info_s status{*percentage, address.data()};
        slotOf<&bt_hid_set_battery_status_received_cb>.deliver(&status);
    }
};

}  // namespace

std::unique_ptr<BluezReporter> makeDeviceReporter(BluezObjects& objects, BluezPeer& peer) {
    return std::make_unique<DeviceReporter>(objects, peer);
}

std::unique_ptr<BluezReporter> makeBondReporter(BluezPeer& peer) {
    return std::make_unique<BondReporter>(peer);
}

std::unique_ptr<BluezReporter> makeBatteryReporter() {
    return std::make_unique<BatteryReporter>();
}

}  // namespace corvane::host
