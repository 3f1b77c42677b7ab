// What is known of BlueZ's objects, and the events that follow from its changes.
#include "BluezObjects.h"

#include "CallbackSlot.h"

#include <bluetooth.h>

#include <string_view>
#include <utility>

namespace corvane::host {

namespace {

constexpr std::string_view adapterInterface = "org.bluez.Adapter1";
constexpr std::string_view deviceInterface = "org.bluez.Device1";

std::string textOf(const Properties& properties, std::string_view name) {
    const auto* const text = findProperty<std::string>(properties, name);
    return text == nullptr ? std::string() : *text;
}

bool isConnected(const Properties& device) {
    const auto* const connected = findProperty<bool>(device, "Connected");
    return connected != nullptr && *connected;
}

// BlueZ doesn't tell the link of a connection. Only an LE device has a random address or
// no class.
bt_device_connection_link_type_e linkOf(const Properties& device) {
    const bool isLe = textOf(device, "AddressType") == "random" ||
                      findProperty<std::uint32_t>(device, "Class") == nullptr;
    return isLe ? BT_DEVICE_LINK_LE : BT_DEVICE_LINK_BREDR;
}

void reportName(std::string name) {
    slotOf<&bt_adapter_set_name_changed_cb>.deliver(name.data());
}

void reportConnection(const Properties& device, bool connected) {
    auto address = textOf(device, "Address");
    bt_device_connection_info_s info{address.data(), linkOf(device),
                                     BT_DEVICE_DISCONNECT_REASON_UNKNOWN};
    slotOf<&bt_device_set_connection_state_changed_cb>.deliver(connected, &info);
}

}  // namespace

BluezObjects::Objects* BluezObjects::objectsOf(const std::string& interface) {
    if (interface == adapterInterface) {
        return &m_adapters;
    }
    return interface == deviceInterface ? &m_devices : nullptr;
}

void BluezObjects::learn(const std::string& path, const std::string& interface,
                         Properties properties) {
    if (auto* const objects = objectsOf(interface)) {
        objects->insert_or_assign(path, std::move(properties));
    }
}

void BluezObjects::add(const std::string& path, const std::string& interface,
                       Properties properties) {
    const auto* const objects = objectsOf(interface);
    if (objects != nullptr && objects->contains(path)) {
        change(path, interface, properties, {});
    } else {
        learn(path, interface, std::move(properties));
        reportAdapterState();
    }
}

void BluezObjects::change(const std::string& path, const std::string& interface,
                          const Properties& changed, const std::vector<std::string>& invalidated) {
    auto* const objects = objectsOf(interface);
    if (objects == nullptr || !objects->contains(path)) {
        return;
    }
    auto& object = objects->at(path);
    const auto before = object;
    for (const auto& name : invalidated) {
        object.erase(name);
    }
    for (const auto& [name, value] : changed) {
        object.insert_or_assign(name, value);
    }
    if (objects == &m_devices) {
        if (isConnected(object) != isConnected(before)) {
            reportConnection(object, isConnected(object));
        }
        return;
    }
    const bool isTheAdapter = path == m_adapters.begin()->first;
    const auto name = textOf(object, "Alias");
    reportAdapterState();
    if (isTheAdapter && !name.empty() && name != textOf(before, "Alias")) {
        reportName(name);
    }
}

void BluezObjects::remove(const std::string& path, const std::string& interface) {
    auto* const objects = objectsOf(interface);
    if (objects == nullptr) {
        return;
    }
    const auto removed = objects->extract(path);
    if (objects == &m_devices && !removed.empty() && isConnected(removed.mapped())) {
        reportConnection(removed.mapped(), false);
    }
    reportAdapterState();
}

void BluezObjects::removeAll() {
    m_adapters.clear();
    m_devices.clear();
    reportAdapterState();
}

std::optional<bool> BluezObjects::adapterPowered() const {
    if (m_adapters.empty()) {
        return std::nullopt;
    }
    const auto* const powered = findProperty<bool>(m_adapters.begin()->second, "Powered");
    return powered == nullptr ? std::nullopt : std::optional(*powered);
}

void BluezObjects::reportAdapterState() {
    auto powered = adapterPowered();
    if (!powered && m_reportedPowered) {
        powered = false;
    }
    if (powered != m_reportedPowered) {
        m_reportedPowered = powered;
        slotOf<&bt_adapter_set_state_changed_cb>.deliver(
            0, *powered ? BT_ADAPTER_STATE_ON : BT_ADAPTER_STATE_OFF);
    }
}

}  // namespace corvane::host
