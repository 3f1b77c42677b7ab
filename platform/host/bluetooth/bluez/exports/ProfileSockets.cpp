// The Bluetooth profiles for which BlueZ hands its connections over to this side.
#include "platform/host/bluetooth/bluez/exports/ProfileSockets.h"

#include <dlog.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"

namespace corvane::host {

// Anybody on the bus may get as far as this; onCall() refuses all but BlueZ.
const sd_bus_vtable ProfileSockets::interface[] = {
    SD_BUS_VTABLE_START(SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Release", "", "", &onCall<&ProfileSockets::release>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("NewConnection", "oha{sv}", "", &onCall<&ProfileSockets::newConnection>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("RequestDisconnection", "o", "", &onCall<&ProfileSockets::requestDisconnection>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

ProfileSockets::ProfileSockets(const Settings::Bluez& settings, const BluezObjects& objects,
                               BluezPeer& peer)
    : m_objects(objects), m_peer(peer) {
    for (const auto& uuid : settings.profiles) {
        m_profiles.push_back(
            {*this, uuid, "/org/corvane/profile/" + std::to_string(m_profiles.size())});
    }
}

bool ProfileSockets::offer() {
    return std::ranges::all_of(m_profiles, [this](Profile& profile) {
        return sd_bus_add_object_vtable(m_peer.bus(), nullptr, profile.path.c_str(),
                                        "org.bluez.Profile1", interface, &profile) >= 0;
    });
}

void ProfileSockets::enroll() {
    for (const auto& profile : m_profiles) {
        const auto call =
            m_peer.makeCall("/org/bluez", "org.bluez.ProfileManager1", "RegisterProfile");
        if (call && sd_bus_message_append(call.get(), "osa{sv}", profile.path.c_str(),
                                          profile.uuid.c_str(), 1, "Name", "s", "Corvane") >= 0) {
            m_peer.send(call, [&profile](sd_bus_message* answer) {
                if (answer == nullptr) {
                    dlog_print(DLOG_PRIORITY_ERROR, "BLUEZ", "BlueZ refuses the profile %s",
                               profile.uuid.c_str());
                }
            });
        }
    }
}

template <ProfileSockets::Serve serve>
int ProfileSockets::onCall(sd_bus_message* call, void* data, sd_bus_error* error) {
    const auto& profile = *static_cast<Profile*>(data);
    auto& self = profile.all;
    if (!self.m_peer.isFromOwner(call)) {
        return sd_bus_error_set(error, SD_BUS_ERROR_ACCESS_DENIED, "this is for BlueZ only");
    }
    self.m_peer.handle([&] { (self.*serve)(profile, call); });
    return 1;
}

void ProfileSockets::release(const Profile&, sd_bus_message* call) {
    sd_bus_reply_method_return(call, "");
}

void ProfileSockets::newConnection(const Profile& profile, sd_bus_message* call) {
    const auto device = readName(call, SD_BUS_TYPE_OBJECT_PATH);
    int lent = -1;
    checked(sd_bus_message_read(call, "h", &lent));
    const int fd = fcntl(lent, F_DUPFD_CLOEXEC, 3);
    if (fd < 0) {
        sd_bus_reply_method_errnof(call, EMFILE, "no more connections");
        return;
    }
    sd_bus_reply_method_return(call, "");
    const auto& socket = m_sockets.emplace_back(
        std::make_unique<ProfileSocket>(fd, device, m_objects.addressOf(device), profile.uuid,
                                        [this](ProfileSocket& ended) { end(ended); }));
    socket->reportConnected();
}

void ProfileSockets::requestDisconnection(const Profile& profile, sd_bus_message* call) {
    const auto device = readName(call, SD_BUS_TYPE_OBJECT_PATH);
    sd_bus_reply_method_return(call, "");
    while (true) {
        const auto found = std::ranges::find_if(m_sockets, [&](const auto& socket) {
            return socket->device() == device && socket->uuid() == profile.uuid;
        });
        if (found == m_sockets.end()) {
            return;
        }
        end(**found);
    }
}

// The socket stays open while its end is reported: its number is still its own.
void ProfileSockets::end(const ProfileSocket& socket) {
    const auto found = std::ranges::find_if(
        m_sockets, [&](const auto& candidate) { return candidate.get() == &socket; });
    const auto ended = std::move(*found);
    m_sockets.erase(found);
    ended->reportDisconnected();
}

}  // namespace corvane::host
