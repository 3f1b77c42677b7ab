// What is known of BlueZ's objects. Every change of theirs goes through here and
// on to the reporters, which make events of it.
#pragma once

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"
#include "platform/host/bluetooth/bluez/bus/Properties.h"

namespace corvane::host {

inline constexpr std::string_view adapterInterface = "org.bluez.Adapter1";
inline constexpr std::string_view deviceInterface = "org.bluez.Device1";
inline constexpr std::string_view batteryInterface = "org.bluez.Battery1";
inline constexpr std::string_view gattServiceInterface = "org.bluez.GattService1";
inline constexpr std::string_view mediaControlInterface = "org.bluez.MediaControl1";
inline constexpr std::string_view mediaTransportInterface = "org.bluez.MediaTransport1";

/// Owner: BluezClient. Threads: main thread; the callbacks are called on it.
/// Errors: std::bad_alloc, and the first exception of a callback, after the change has been
/// noted and reported by all reporters.
class BluezObjects {
public:
    using Interfaces = std::map<std::string, Properties, std::less<>>;

    void addReporter(std::unique_ptr<BluezReporter> reporter);

    /// An object found to exist. After all of them: learnt().
    void learn(const std::string& path, Interfaces interfaces);
    void learnt();

    /// Interfaces were added, to a new object or to a known one; of an interface that was
    /// there already these are all its properties once more.
    void add(const std::string& path, Interfaces interfaces);

    void change(const std::string& path, const std::string& interface, const Properties& changed,
                const std::vector<std::string>& invalidated);
    void remove(const std::string& path, const std::vector<std::string>& interfaces);

    /// BlueZ, or the bus, has gone.
    void removeAll();

    /// The properties of an interface, or null.
    const Properties* find(const std::string& path, std::string_view interface) const;

    /// The address of a device, also after its removal while anything below it is left.
    std::string addressOf(const std::string& devicePath) const;

    /// The platform knows one adapter: the first in the order of the object paths. Empty if
    /// there is none.
    std::string adapterPath() const;

    /// Calls `use(path, properties)` for every object that has the interface.
    void forEach(std::string_view interface,
                 const std::function<void(const std::string&, const Properties&)>& use) const;

private:
    void noteAddress(const std::string& path, const Interfaces& interfaces);
    void forgetAddresses();
    void changeOne(const std::string& path, const std::string& interface, const Properties& changed,
                   const std::vector<std::string>& invalidated);
    void removeOne(const std::string& path, const std::string& interface);
    void report(const Change& change);
    void throwKept();

    std::map<std::string, Interfaces> m_objects;
    std::map<std::string, std::string> m_addresses;
    std::vector<std::unique_ptr<BluezReporter>> m_reporters;
    std::exception_ptr m_kept;
};

}  // namespace corvane::host
