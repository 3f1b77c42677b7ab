// One connection of a profile: a socket of BlueZ, read by the main loop.
#pragma once

#include <Ecore.h>

#include <functional>
#include <string>

namespace corvane::host {

/// Owner: ProfileSockets. Threads: main thread. Destroying it closes the socket, silently.
/// Errors: std::bad_alloc; what a callback throws leaves through the main loop.
class ProfileSocket {
public:
    /// Takes over `fd`. `onEnd` is called when the other side has ended it, and may destroy
    /// the object.
    ProfileSocket(int fd, std::string device, std::string address, std::string uuid,
                  std::function<void(ProfileSocket&)> onEnd);
    ~ProfileSocket();
    ProfileSocket(const ProfileSocket&) = delete;
    ProfileSocket& operator=(const ProfileSocket&) = delete;

    void reportConnected() const;
    void reportDisconnected() const;

    /// The path of the remote device.
    const std::string& device() const { return m_device; }
    const std::string& uuid() const { return m_uuid; }

private:
    void read();

    int m_fd;
    std::string m_device;
    std::string m_address;
    std::string m_uuid;
    std::function<void(ProfileSocket&)> m_onEnd;
    Ecore_Fd_Handler* m_handler;
};

}  // namespace corvane::host
