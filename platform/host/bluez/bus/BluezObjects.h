// A copy of the properties of BlueZ's objects. It passes every change to the reporters, which
// turn it into events.
#pragma once

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/bluez/bus/BluezReporter.h"
#include "platform/host/bluez/bus/Properties.h"

namespace corvane::host {

inline constexpr std::string_view ADAPTER_INTERFACE = "org.bluez.Adapter1";
inline constexpr std::string_view DEVICE_INTERFACE = "org.bluez.Device1";
inline constexpr std::string_view BATTERY_INTERFACE = "org.bluez.Battery1";
inline constexpr std::string_view GATT_SERVICE_INTERFACE = "org.bluez.GattService1";
inline constexpr std::string_view MEDIA_CONTROL_INTERFACE = "org.bluez.MediaControl1";
inline constexpr std::string_view MEDIA_TRANSPORT_INTERFACE = "org.bluez.MediaTransport1";

/// Owner: BluezClient. Threads: main thread. Errors: std::bad_alloc, and the first exception
/// of a callback, after the change is stored and all reporters have seen it.
class BluezObjects {
public:
    using Interfaces = std::map<std::string, Properties, std::less<>>;

    void addReporter(std::unique_ptr<BluezReporter> reporter);

    /// Stores an object of the snapshot, without an event. finishSnapshot() follows the last.
    void addToSnapshot(const std::string& path, Interfaces interfaces);
    void finishSnapshot();

    /// Adds interfaces to a new or a known object. If the object already has one of them, the
    /// properties update it.
    void add(const std::string& path, Interfaces interfaces);

    void change(const std::string& path, const std::string& interface, const Properties& changed,
                const std::vector<std::string>& invalidated);
    void remove(const std::string& path, const std::vector<std::string>& interfaces);

    /// Removes everything: BlueZ or the bus has disappeared.
    void removeAll();

    /// Returns the properties of an interface, or null.
    const Properties* find(const std::string& path, std::string_view interface) const;

    /// Returns the address of a device, or an empty string. The address is kept after the
    /// device's removal while an object below its path exists.
    std::string addressOf(const std::string& devicePath) const;

    /// Returns the path of the one adapter that the platform has: the first in the order of
    /// the object paths. Empty if there is none.
    std::string adapterPath() const;

    /// Calls `use(path, properties)` for every object that has the interface.
    void forEach(std::string_view interface,
                 const std::function<void(const std::string&, const Properties&)>& use) const;

private:
    void storeAddress(const std::string& path, const Interfaces& interfaces);
    void dropAddresses();
    void changeOne(const std::string& path, const std::string& interface, const Properties& changed,
                   const std::vector<std::string>& invalidated);
    void removeOne(const std::string& path, const std::string& interface);
    void report(const Change& change);
    void throwFirst();

    std::map<std::string, Interfaces> m_objects;
    std::map<std::string, std::string> m_addresses;
    std::vector<std::unique_ptr<BluezReporter>> m_reporters;
    std::exception_ptr m_firstError;
};

}  // namespace corvane::host
