// The Bluetooth profiles whose connections BlueZ hands over to the daemon, and the sockets
// of these connections. Only profiles that the settings name are offered, because a profile
// has one owner on the whole machine.
#pragma once

#include <systemd/sd-bus.h>

#include <list>
#include <string>

#include "platform/host/bluez/bus/BluezPeer.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

class BluezObjects;

/// Owner: BluezClient. Threads: main thread. Connections survive BlueZ and the bus: they end
/// when their sockets end. Destroying the object closes the sockets without an event.
/// Errors: std::bad_alloc; what a callback throws leaves through the main loop.
class ProfileSockets {
public:
    /// The arguments outlive this object.
    ProfileSockets(const Settings::Bluez& settings, const BluezObjects& objects, BluezPeer& peer);
    ~ProfileSockets();
    ProfileSockets(const ProfileSockets&) = delete;
    ProfileSockets& operator=(const ProfileSockets&) = delete;

    /// Adds the profiles' D-Bus objects to a new connection. Returns false on failure.
    bool exportObjects();

    /// Registers the profiles with a new owner of org.bluez.
    void registerWithBluez();

private:
    struct Profile {
        ProfileSockets& all;
        std::string uuid;
        std::string path;
    };
    struct Connection;
    using Connections = std::list<Connection>;
    using Method = void (ProfileSockets::*)(const Profile& profile, sd_bus_message* call);

    template <Method method>
    static int onCall(sd_bus_message* call, void* profile, sd_bus_error* error);

    void release(const Profile& profile, sd_bus_message* call);
    void newConnection(const Profile& profile, sd_bus_message* call);
    void requestDisconnection(const Profile& profile, sd_bus_message* call);
    void read(int fd);
    void end(Connections::iterator connection);

    static const sd_bus_vtable INTERFACE[];

    const BluezObjects& m_objects;
    BluezPeer& m_peer;
    std::list<Profile> m_profiles;
    Connections m_connections;
};

}  // namespace corvane::host
