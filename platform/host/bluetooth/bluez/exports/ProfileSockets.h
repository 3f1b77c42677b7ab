// The Bluetooth profiles for which BlueZ hands its connections over to this side:
// those that the settings name, for a profile has one owner on the whole machine.
#pragma once

#include <systemd/sd-bus.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "platform/host/bluetooth/bluez/bus/BluezPeer.h"
#include "platform/host/bluetooth/bluez/exports/ProfileSocket.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

class BluezObjects;

/// Owner: BluezClient. Threads: main thread. Connections outlive BlueZ and the bus: they
/// end when their sockets do. Errors: what a callback throws leaves through the main loop.
class ProfileSockets {
public:
    /// All of them outlive this.
    ProfileSockets(const Settings::Bluez& settings, const BluezObjects& objects, BluezPeer& peer);

    /// There is a connection to the bus. False if the profiles can't be offered there.
    bool offer();

    /// There is a new owner of org.bluez.
    void enroll();

private:
    struct Profile {
        ProfileSockets& all;
        std::string uuid;
        std::string path;
    };
    using Serve = void (ProfileSockets::*)(const Profile& profile, sd_bus_message* call);

    template <Serve serve>
    static int onCall(sd_bus_message* call, void* profile, sd_bus_error* error);

    void release(const Profile& profile, sd_bus_message* call);
    void newConnection(const Profile& profile, sd_bus_message* call);
    void requestDisconnection(const Profile& profile, sd_bus_message* call);
    void end(const ProfileSocket& socket);

    static const sd_bus_vtable interface[];

    const BluezObjects& m_objects;
    BluezPeer& m_peer;
    std::list<Profile> m_profiles;
    std::list<std::unique_ptr<ProfileSocket>> m_sockets;
};

}  // namespace corvane::host
