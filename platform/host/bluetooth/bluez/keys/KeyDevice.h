// One input device that BlueZ made of a remote control.
#pragma once

#include <Ecore.h>
#include <linux/input.h>

#include <functional>
#include <memory>
#include <string>

namespace corvane::host {

/// Owner: KeyReporter. Threads: main thread. Errors: std::bad_alloc; what `onKey` throws
/// leaves through the main loop.
class KeyDevice {
public:
    struct Handlers {
        std::function<void(KeyDevice&, int key, bool pressed)> onKey;
        std::function<void(KeyDevice&)> onEnd;  // may destroy the object
    };

    /// Null if the file isn't such a device, or may not be read.
    static std::unique_ptr<KeyDevice> open(const std::string& file, Handlers handlers);

    KeyDevice(int fd, std::string remote, Handlers handlers);
    ~KeyDevice();
    KeyDevice(const KeyDevice&) = delete;
    KeyDevice& operator=(const KeyDevice&) = delete;

    /// The name of the remote control.
    const std::string& remote() const { return m_remote; }

private:
    void read();

    int m_fd;
    std::string m_remote;
    Handlers m_handlers;
    Ecore_Fd_Handler* m_handler;
};

}  // namespace corvane::host
