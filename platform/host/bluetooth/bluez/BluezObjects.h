// What is known of BlueZ's objects, and the events that follow from its changes.
// What is merely found is no event, except the state of the adapter.
#pragma once

#include "Properties.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane::host {

/// The platform knows one adapter: the first in the order of the object paths.
///
/// Owner: BluezClient. Threads: main thread; the callbacks are called on it.
/// Errors: std::bad_alloc, and what a callback throws, after the change has been noted.
class BluezObjects {
public:
    /// An object found to exist; no event. After all of them: reportAdapterState().
    void learn(const std::string& path, const std::string& interface, Properties properties);
    void reportAdapterState();

    /// An interface was added: to a new object, or once more with all its properties.
    void add(const std::string& path, const std::string& interface, Properties properties);

    void change(const std::string& path, const std::string& interface, const Properties& changed,
                const std::vector<std::string>& invalidated);
    void remove(const std::string& path, const std::string& interface);

    /// BlueZ, or the bus, has gone.
    void removeAll();

private:
    using Objects = std::map<std::string, Properties>;

    Objects* objectsOf(const std::string& interface);
    std::optional<bool> adapterPowered() const;

    Objects m_adapters;
    Objects m_devices;
    std::optional<bool> m_reportedPowered;
};

}  // namespace corvane::host
