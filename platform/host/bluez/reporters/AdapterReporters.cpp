// The adapter's power state and name, and discovery.
#include <bluetooth.h>

#include <optional>

#include "platform/host/bluez/bus/BluezObjects.h"
#include "platform/host/bluez/bus/DeviceRecord.h"
#include "platform/host/bluez/reporters/Reporters.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

// The power state is reported when it is first read, too: plugins cannot ask for it.
class AdapterReporter : public BluezReporter {
public:
    void onChange(const Change& change) override {
        if (change.interface != ADAPTER_INTERFACE) {
            return;
        }
        reportState(change.objects);
        if (change.before == nullptr || change.now == nullptr ||
            change.path != change.objects.adapterPath()) {
            return;
        }
        auto name = propertyOr<std::string>(change.now, "Alias");
        if (!name.empty() && name != propertyOr<std::string>(change.before, "Alias")) {
            slotOf<&bt_adapter_set_name_changed_cb>.deliver(name.data());
        }
    }

    void onSnapshot(const BluezObjects& objects) override { reportState(objects); }

private:
    void reportState(const BluezObjects& objects) {
        const auto* const adapter = objects.find(objects.adapterPath(), ADAPTER_INTERFACE);
        const auto* const found =
            adapter == nullptr ? nullptr : findProperty<bool>(*adapter, "Powered");
        const bool isPowered = found != nullptr && *found;
        if ((found == nullptr && !m_reportedPowered.has_value()) ||
            m_reportedPowered == isPowered) {
            return;
        }
        m_reportedPowered = isPowered;
        slotOf<&bt_adapter_set_state_changed_cb>.deliver(
            0, isPowered ? BT_ADAPTER_STATE_ON : BT_ADAPTER_STATE_OFF);
    }

    std::optional<bool> m_reportedPowered;
};

// Discovery counts no matter which program asked BlueZ for it.
class DiscoveryReporter : public BluezReporter {
public:
    void onChange(const Change& change) override {
        if (change.interface == ADAPTER_INTERFACE) {
            onAdapter(change);
        } else if (change.interface == DEVICE_INTERFACE && change.now != nullptr) {
            onDevice(change);
        }
    }

    void onSnapshot(const BluezObjects& objects) override {
        m_discovering = isDiscovering(objects);
    }

private:
    static bool isDiscovering(const BluezObjects& objects) {
        return propertyOr<bool>(objects.find(objects.adapterPath(), ADAPTER_INTERFACE),
                                "Discovering");
    }

    void onAdapter(const Change& change) {
        const bool discovering = isDiscovering(change.objects);
        if (discovering == m_discovering) {
            return;
        }
        m_discovering = discovering;
        if (discovering && change.before == nullptr) {
            return;  // discovery began before this adapter was seen
        }
        deliver(discovering ? BT_ADAPTER_DEVICE_DISCOVERY_STARTED
                            : BT_ADAPTER_DEVICE_DISCOVERY_FINISHED,
                nullptr);
    }

    // A device is found when it appears, and again with each new signal strength.
    void onDevice(const Change& change) const {
        const bool isNew = change.before == nullptr;
        const bool isHeard = !isNew && changedTo<std::int16_t>(change, "RSSI") != nullptr;
        if (m_discovering && (isNew || isHeard) &&
            propertyOr<std::string>(change.now, "Adapter") == change.objects.adapterPath()) {
            deliver(BT_ADAPTER_DEVICE_DISCOVERY_FOUND, change.now);
        }
    }

    static void deliver(bt_adapter_device_discovery_state_e state, const Properties* device) {
        LentDevice lent(device);
        const auto info = lent.makeRecord<bt_adapter_device_discovery_info_s>();
        info->rssi = propertyOr<std::int16_t>(device, "RSSI");
        info->appearance = propertyOr<std::uint16_t>(device, "Appearance");
        slotOf<&bt_adapter_set_device_discovery_state_changed_cb>.deliver(0, state, info.get());
    }

    bool m_discovering = false;
};

}  // namespace

std::unique_ptr<BluezReporter> makeAdapterReporter() {
    return std::make_unique<AdapterReporter>();
}

std::unique_ptr<BluezReporter> makeDiscoveryReporter() {
    return std::make_unique<DiscoveryReporter>();
}

}  // namespace corvane::host
