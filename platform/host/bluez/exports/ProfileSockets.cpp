// The Bluetooth profiles whose connections BlueZ hands over to the daemon.
#include "platform/host/bluez/exports/ProfileSockets.h"

#include <bluetooth.h>
#include <dlog.h>
#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <utility>

#include "platform/host/bluez/FdReader.h"
#include "platform/host/bluez/bus/BluezObjects.h"
#include "platform/host/slots/CallbackSlot.h"
#include "platform/host/slots/LentMemory.h"

namespace corvane::host {

struct ProfileSockets::Connection {
    Connection(Descriptor fd, std::string devicePath, std::string deviceAddress,
               std::string profile, std::function<void()> onReadable)
        : device(std::move(devicePath)),
          address(std::move(deviceAddress)),
          uuid(std::move(profile)),
          reader(std::move(fd), std::move(onReadable)) {}

    // The role is always server, and there is no listening socket here: it stays in BlueZ,
    // which hands over only connections that the remote device began.
    void report(bt_socket_connection_state_e state) const {
        const LentText lentAddress(address);
        const LentText lentUuid(uuid);
        bt_socket_connection_s connection{reader.fd(), -1, BT_SOCKET_ROLE_SERVER, lentAddress.get(),
                                          lentUuid.get()};
        slotOf<&bt_socket_set_connection_state_changed_cb>.deliver(0, state, &connection);
    }

    std::string device;  // its object path
    std::string address;
    std::string uuid;
    FdReader reader;
};

const sd_bus_vtable ProfileSockets::INTERFACE[] = {
    SD_BUS_VTABLE_START(ANY_CALLER),
    SD_BUS_METHOD("Release", "", "", &onCall<&ProfileSockets::release>, ANY_CALLER),
    SD_BUS_METHOD("NewConnection", "oha{sv}", "", &onCall<&ProfileSockets::newConnection>,
                  ANY_CALLER),
    SD_BUS_METHOD("RequestDisconnection", "o", "", &onCall<&ProfileSockets::requestDisconnection>,
                  ANY_CALLER),
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

ProfileSockets::~ProfileSockets() = default;

bool ProfileSockets::exportObjects() {
    return std::ranges::all_of(m_profiles, [this](Profile& profile) {
        return sd_bus_add_object_vtable(m_peer.bus(), nullptr, profile.path.c_str(),
                                        "org.bluez.Profile1", INTERFACE, &profile) >= 0;
    });
}

void ProfileSockets::registerWithBluez() {
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

template <ProfileSockets::Method method>
int ProfileSockets::onCall(sd_bus_message* call, void* data, sd_bus_error* error) {
    const auto& profile = *static_cast<Profile*>(data);
    auto& self = profile.all;
    return self.m_peer.serve(call, error, [&] { (self.*method)(profile, call); });
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
    Descriptor socket(fd);
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
    sd_bus_reply_method_return(call, "");
    const auto& added =
        m_connections.emplace_back(std::move(socket), device, m_objects.addressOf(device),
                                   profile.uuid, [this, fd] { read(fd); });
    added.report(BT_SOCKET_CONNECTED);
}

// Reads once each time, so that a device that never stops sending does not block the main
// loop.
void ProfileSockets::read(int fd) {
    const auto connection = std::ranges::find_if(
        m_connections, [fd](const auto& candidate) { return candidate.reader.fd() == fd; });
    if (connection == m_connections.end()) {
        return;  // it has ended, and its last callback runs the main loop
    }
    std::array<char, 4096> buffer;
    const auto size = connection->reader.read(buffer.data(), buffer.size());
    if (size > 0) {
        LentBytes bytes({buffer.data(), buffer.data() + *size});
        bt_socket_received_data_s data{fd, bytes.count(), bytes.get()};
        slotOf<&bt_socket_set_data_received_cb>.deliver(&data);
    } else if (size.has_value()) {
        end(connection);
    }
}

void ProfileSockets::requestDisconnection(const Profile& profile, sd_bus_message* call) {
    const auto device = readName(call, SD_BUS_TYPE_OBJECT_PATH);
    sd_bus_reply_method_return(call, "");
    while (true) {
        const auto found = std::ranges::find_if(m_connections, [&](const auto& connection) {
            return connection.device == device && connection.uuid == profile.uuid;
        });
        if (found == m_connections.end()) {
            return;
        }
        end(found);
    }
}

// The socket is closed after the report, so that no other file gets its number before.
void ProfileSockets::end(Connections::iterator connection) {
    Connections ended;
    ended.splice(ended.begin(), m_connections, connection);
    ended.front().report(BT_SOCKET_DISCONNECTED);
}

}  // namespace corvane::host
