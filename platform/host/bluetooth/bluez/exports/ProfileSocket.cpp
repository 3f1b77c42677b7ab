// One connection of a profile: a socket of BlueZ, read by the main loop.
#include "platform/host/bluetooth/bluez/exports/ProfileSocket.h"

#include <bluetooth.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <new>
#include <utility>

#include "platform/host/slots/CallbackSlot.h"
#include "platform/host/slots/LentMemory.h"

namespace corvane::host {

namespace {

// The listening socket stays in BlueZ, which only ever hands over connections that the
// remote device began: nobody here asks for one.
void report(bt_socket_connection_state_e state, int fd, const std::string& address,
            const std::string& uuid) {
    const LentText lentAddress(address);
    const LentText lentUuid(uuid);
    bt_socket_connection_s connection{fd, -1, BT_SOCKET_ROLE_SERVER, lentAddress.get(),
                                      lentUuid.get()};
    slotOf<&bt_socket_set_connection_state_changed_cb>.deliver(0, state, &connection);
}

}  // namespace

ProfileSocket::ProfileSocket(int fd, std::string device, std::string address, std::string uuid,
                             std::function<void(ProfileSocket&)> onEnd)
    : m_fd(fd),
      m_device(std::move(device)),
      m_address(std::move(address)),
      m_uuid(std::move(uuid)),
      m_onEnd(std::move(onEnd)),
      m_handler(ecore_main_fd_handler_add(
          fd, ECORE_FD_READ,
          [](void* self, Ecore_Fd_Handler*) -> Eina_Bool {
              static_cast<ProfileSocket*>(self)->read();
              return ECORE_CALLBACK_RENEW;
          },
          this, nullptr, nullptr)) {
    if (m_handler == nullptr) {
        close(m_fd);
        throw std::bad_alloc();
    }
    fcntl(m_fd, F_SETFL, fcntl(m_fd, F_GETFL) | O_NONBLOCK);
}

ProfileSocket::~ProfileSocket() {
    ecore_main_fd_handler_del(m_handler);
    close(m_fd);
}

void ProfileSocket::reportConnected() const {
    report(BT_SOCKET_CONNECTED, m_fd, m_address, m_uuid);
}

void ProfileSocket::reportDisconnected() const {
    report(BT_SOCKET_DISCONNECTED, m_fd, m_address, m_uuid);
}

// One portion at a time: a device that never stops sending must not keep the main loop
// from everything else.
void ProfileSocket::read() {
    std::array<char, 4096> buffer;
    const auto size = ::read(m_fd, buffer.data(), buffer.size());
    if (size > 0) {
        LentBytes bytes({buffer.begin(), buffer.begin() + size});
        bt_socket_received_data_s data{m_fd, bytes.count(), bytes.get()};
        slotOf<&bt_socket_set_data_received_cb>.deliver(&data);
    } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
        const auto onEnd = m_onEnd;
        onEnd(*this);
    }
}

}  // namespace corvane::host
