// A copy of the properties of BlueZ's objects.
#include "platform/host/bluez/bus/BluezObjects.h"

#include <iterator>
#include <utility>

namespace corvane::host {

void BluezObjects::addReporter(std::unique_ptr<BluezReporter> reporter) {
    m_reporters.push_back(std::move(reporter));
}

void BluezObjects::addToSnapshot(const std::string& path, Interfaces interfaces) {
    storeAddress(path, interfaces);
    m_objects.insert_or_assign(path, std::move(interfaces));
}

void BluezObjects::finishSnapshot() {
    for (const auto& reporter : m_reporters) {
        try {
            reporter->onSnapshot(*this);
        } catch (...) {
            m_firstError = m_firstError ? m_firstError : std::current_exception();
        }
    }
    throwFirst();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): its properties are moved from
void BluezObjects::add(const std::string& path, Interfaces interfaces) {
    const bool isFound = interfaces.contains(DEVICE_INTERFACE) && !m_objects.contains(path);
    storeAddress(path, interfaces);
    auto& object = m_objects[path];
    Interfaces known;
    std::vector<const Interfaces::value_type*> added;
    for (auto& [name, properties] : interfaces) {
        if (object.contains(name)) {
            known.emplace(name, std::move(properties));
        } else {
            added.push_back(&*object.emplace(name, std::move(properties)).first);
        }
    }
    for (const auto* const interface : added) {
        report({*this, path, interface->first, nullptr, &interface->second, isFound});
    }
    for (const auto& [name, properties] : known) {
        changeOne(path, name, properties, {});
    }
    throwFirst();
}

void BluezObjects::change(const std::string& path, const std::string& interface,
                          const Properties& changed, const std::vector<std::string>& invalidated) {
    changeOne(path, interface, changed, invalidated);
    throwFirst();
}

void BluezObjects::changeOne(const std::string& path, const std::string& interface,
                             const Properties& changed,
                             const std::vector<std::string>& invalidated) {
    const auto object = m_objects.find(path);
    if (object == m_objects.end() || !object->second.contains(interface)) {
        return;
    }
    auto& now = object->second.at(interface);
    const auto before = now;
    for (const auto& name : invalidated) {
        now.erase(name);
    }
    for (const auto& [name, value] : changed) {
        now.insert_or_assign(name, value);
    }
    storeAddress(path, object->second);
    if (now != before) {
        report({*this, path, interface, &before, &now, false});
    }
}

void BluezObjects::remove(const std::string& path, const std::vector<std::string>& interfaces) {
    for (const auto& interface : interfaces) {
        removeOne(path, interface);
    }
    throwFirst();
}

// From the last path to the first, so that an adapter follows its devices.
void BluezObjects::removeAll() {
    while (!m_objects.empty()) {
        const auto path = std::prev(m_objects.end())->first;
        const auto interface = m_objects.at(path).begin();
        if (interface == m_objects.at(path).end()) {
            m_objects.erase(path);
        } else {
            removeOne(path, std::string(interface->first));
        }
    }
    throwFirst();
}

void BluezObjects::removeOne(const std::string& path, const std::string& interface) {
    const auto object = m_objects.find(path);
    if (object == m_objects.end()) {
        return;
    }
    const auto removed = object->second.extract(interface);
    if (object->second.empty()) {
        m_objects.erase(object);
    }
    if (!removed.empty()) {
        report({*this, path, interface, &removed.mapped(), nullptr, false});
    }
    dropAddresses();
}

const Properties* BluezObjects::find(const std::string& path, std::string_view interface) const {
    const auto object = m_objects.find(path);
    if (object == m_objects.end()) {
        return nullptr;
    }
    const auto found = object->second.find(interface);
    return found == object->second.end() ? nullptr : &found->second;
}

std::string BluezObjects::addressOf(const std::string& devicePath) const {
    const auto found = m_addresses.find(devicePath);
    return found == m_addresses.end() ? std::string() : found->second;
}

std::string BluezObjects::adapterPath() const {
    for (const auto& [path, interfaces] : m_objects) {
        if (interfaces.contains(ADAPTER_INTERFACE)) {
            return path;
        }
    }
    return {};
}

void BluezObjects::forEach(
    std::string_view interface,
    const std::function<void(const std::string&, const Properties&)>& use) const {
    for (const auto& [path, interfaces] : m_objects) {
        if (const auto found = interfaces.find(interface); found != interfaces.end()) {
            use(path, found->second);
        }
    }
}

// The address is kept when the device is removed, because its audio and its remote control may
// be removed later.
void BluezObjects::storeAddress(const std::string& path, const Interfaces& interfaces) {
    if (const auto found = interfaces.find(DEVICE_INTERFACE); found != interfaces.end()) {
        m_addresses[path] = propertyOr<std::string>(&found->second, "Address");
    }
}

// Drops the addresses of devices below whose paths no object is left.
void BluezObjects::dropAddresses() {
    std::erase_if(m_addresses, [this](const auto& entry) {
        const auto rest = m_objects.lower_bound(entry.first);
        return rest == m_objects.end() || !rest->first.starts_with(entry.first);
    });
}

void BluezObjects::report(const Change& change) {
    for (const auto& reporter : m_reporters) {
        try {
            reporter->onChange(change);
        } catch (...) {
            m_firstError = m_firstError ? m_firstError : std::current_exception();
        }
    }
}

void BluezObjects::throwFirst() {
    if (m_firstError) {
        std::rethrow_exception(std::exchange(m_firstError, nullptr));
    }
}

}  // namespace corvane::host
