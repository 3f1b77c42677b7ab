// The keys of remote controls (AVRCP). BlueZ does not publish them on the bus: it makes an
// input device for each remote control, named after it.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/host/bluez/FdReader.h"

namespace corvane::host {

class BluezObjects;

/// Owner: BluezClient. Threads: main thread. Errors: std::bad_alloc; what a callback throws
/// leaves through the main loop. A missing directory and devices that cannot be opened are
/// ignored.
class KeyReporter {
public:
    /// Watches the directory for input devices. `objects` outlives this object.
    KeyReporter(std::string directory, const BluezObjects& objects);
    KeyReporter(const KeyReporter&) = delete;
    KeyReporter& operator=(const KeyReporter&) = delete;

private:
    struct Device {
        Device(std::string name, Descriptor fd, std::function<void()> onReadable)
            : remote(std::move(name)), reader(std::move(fd), std::move(onReadable)) {}

        std::string remote;  // the name of the remote control
        FdReader reader;
    };

    void watchDirectory();
    void readWatch();
    void openDevice(const std::string& file);
    void readDevice(const std::string& file);
    void report(const std::string& remote, int key, bool pressed);
    std::string addressOf(const std::string& remote) const;

    std::string m_directory;
    const BluezObjects& m_objects;
    std::map<std::string, Device> m_devices;  // by file name
    std::map<std::string, bool> m_muted;      // by address
    std::optional<FdReader> m_watch;
};

}  // namespace corvane::host
