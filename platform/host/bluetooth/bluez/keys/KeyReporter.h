// The keys of remote controls. They are not on the bus: BlueZ makes an input device
// of each, named after the remote.
#pragma once

#include <Ecore.h>

#include <map>
#include <memory>
#include <string>

#include "platform/host/bluetooth/bluez/keys/KeyDevice.h"

namespace corvane::host {

class BluezObjects;

/// Owner: BluezClient. Threads: main thread. Errors: std::bad_alloc. A directory that isn't
/// there, and devices that may not be read, are no errors.
class KeyReporter {
public:
    /// Watches the directory for devices. `objects` outlives this.
    KeyReporter(std::string directory, const BluezObjects& objects);
    ~KeyReporter();
    KeyReporter(const KeyReporter&) = delete;
    KeyReporter& operator=(const KeyReporter&) = delete;

private:
    void watch();
    void readWatch();
    void consider(const std::string& name);
    void forget(const KeyDevice& device);
    void report(const KeyDevice& device, int key, bool pressed);
    std::string addressOf(const std::string& remote) const;

    std::string m_directory;
    const BluezObjects& m_objects;
    std::map<std::string, std::unique_ptr<KeyDevice>> m_devices;
    std::map<std::string, bool> m_muted;
    int m_watch = -1;
    Ecore_Fd_Handler* m_handler = nullptr;
};

}  // namespace corvane::host
