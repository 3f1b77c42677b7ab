// Connections by purpose: GATT over LE, input devices (HID) and remote controls (AVRCP).
// BlueZ does not publish these as such. They follow from a device's connection and the
// services it offers, which may become known later than the connection.
#include <bluetooth.h>

#include "platform/host/bluez/bus/BluezObjects.h"
#include "platform/host/bluez/bus/DeviceRecord.h"
#include "platform/host/bluez/reporters/Reporters.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

// Reports a device as connected once its connection has proved to serve the purpose, until
// the connection ends.
class LinkReporter : public BluezReporter {
public:
    using IsProved = bool (*)(const BluezObjects& objects, const std::string& path,
                              const Properties* device);
    using Deliver = void (*)(bool connected, const char* address);

    LinkReporter(IsProved isProved, Deliver deliver) : m_isProved(isProved), m_deliver(deliver) {}

    void onChange(const Change& change) override {
        auto path = change.path;
        if (change.interface == GATT_SERVICE_INTERFACE) {
            path = propertyOr<std::string>(change.now, "Device");
        } else if (change.interface != DEVICE_INTERFACE) {
            return;
        }
        const auto address = change.objects.addressOf(path);
        const bool connected = isConnected(change.objects, path);
        if (setMember(m_connected, path, connected) && !change.isFound) {
            m_deliver(connected, address.c_str());
        }
    }

    void onSnapshot(const BluezObjects& objects) override {
        m_connected.clear();
        objects.forEach(DEVICE_INTERFACE, [&](const std::string& path, const Properties&) {
            setMember(m_connected, path, isConnected(objects, path));
        });
    }

private:
    bool isConnected(const BluezObjects& objects, const std::string& path) const {
        const auto* const device = objects.find(path, DEVICE_INTERFACE);
        return propertyOr<bool>(device, "Connected") &&
               (m_connected.contains(path) || m_isProved(objects, path, device));
    }

    IsProved m_isProved;
    Deliver m_deliver;
    PathSet m_connected;
};

bool servesGatt(const BluezObjects& objects, const std::string& path, const Properties* device) {
    bool hasService = propertyOr<bool>(device, "ServicesResolved");
    objects.forEach(GATT_SERVICE_INTERFACE, [&](const std::string&, const Properties& service) {
        hasService = hasService || propertyOr<std::string>(&service, "Device") == path;
    });
    return hasService && linkOf(device) == BT_DEVICE_LINK_LE;
}

bool servesHid(const BluezObjects&, const std::string&, const Properties* device) {
    return propertyOr<bool>(device, "ServicesResolved") &&
           (offers(device, Service::HumanInterface) ||
            offers(device, Service::HumanInterfaceOverGatt));
}

// BlueZ has one AVRCP connection for both roles of the remote device.
class RemoteControlReporter : public BluezReporter {
public:
    void onChange(const Change& change) override {
        if (change.interface != DEVICE_INTERFACE && change.interface != MEDIA_CONTROL_INTERFACE) {
            return;
        }
        const auto& path = change.path;
        const auto address = change.objects.addressOf(path);
        const bool isTarget = update(m_targets, change.objects, path, Service::RemoteControlTarget);
        const bool isController =
            update(m_controllers, change.objects, path, Service::RemoteControl);
        if (change.isFound) {
            return;
        }
        if (isTarget) {
            slotOf<&bt_avrcp_control_initialize>.deliver(m_targets.contains(path), address.c_str());
        }
        if (isController) {
            slotOf<&bt_avrcp_target_initialize>.deliver(m_controllers.contains(path),
                                                        address.c_str());
        }
    }

    void onSnapshot(const BluezObjects& objects) override {
        m_targets.clear();
        m_controllers.clear();
        objects.forEach(MEDIA_CONTROL_INTERFACE, [&](const std::string& path, const Properties&) {
            update(m_targets, objects, path, Service::RemoteControlTarget);
            update(m_controllers, objects, path, Service::RemoteControl);
        });
    }

private:
    static bool update(PathSet& connected, const BluezObjects& objects, const std::string& path,
                       Service role) {
        const bool isConnected =
            propertyOr<bool>(objects.find(path, MEDIA_CONTROL_INTERFACE), "Connected") &&
            (connected.contains(path) || offers(objects.find(path, DEVICE_INTERFACE), role));
        return setMember(connected, path, isConnected);
    }

    PathSet m_targets;
    PathSet m_controllers;
};

}  // namespace

std::unique_ptr<BluezReporter> makeGattReporter() {
    return std::make_unique<LinkReporter>(&servesGatt, [](bool connected, const char* address) {
        slotOf<&bt_gatt_set_connection_state_changed_cb>.deliver(0, connected, address);
    });
}

std::unique_ptr<BluezReporter> makeHidReporter() {
    return std::make_unique<LinkReporter>(&servesHid, [](bool connected, const char* address) {
        slotOf<&bt_hid_host_initialize>.deliver(0, connected, address);
    });
}

std::unique_ptr<BluezReporter> makeRemoteControlReporter() {
    return std::make_unique<RemoteControlReporter>();
}

}  // namespace corvane::host
