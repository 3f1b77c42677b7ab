// Lets a developer make the platform's events.
#include "InjectServer.h"

#include <systemd/sd-bus.h>
#include <systemd/sd-id128.h>
#include <unistd.h>

#include <memory>
#include <new>
#include <utility>

namespace corvane::host {

namespace {

// The server's end of a connection; null if it can't be had. Takes over `fd`.
BusPtr openServerBus(int fd) {
    sd_bus* made = nullptr;
    if (sd_bus_new(&made) < 0) {
        close(fd);
        return nullptr;
    }
    BusPtr bus(made);
    if (sd_bus_set_fd(made, fd, fd) < 0) {
        close(fd);
        return nullptr;
    }
    sd_id128_t id;
    if (sd_id128_randomize(&id) < 0 || sd_bus_set_server(made, 1, id) < 0 ||
        sd_bus_start(made) < 0) {
        return nullptr;
    }
    return bus;
}

}  // namespace

InjectServer::InjectServer(const std::string& path, std::span<const Delivery> deliveries)
    : m_socket(path), m_interface(deliveries) {
    const auto onPeer = [](void* self, Ecore_Fd_Handler*) -> Eina_Bool {
        static_cast<InjectServer*>(self)->acceptClient();
        return ECORE_CALLBACK_RENEW;
    };
    m_handler =
        ecore_main_fd_handler_add(m_socket.fd(), ECORE_FD_READ, onPeer, this, nullptr, nullptr);
    if (m_handler == nullptr) {
        throw std::bad_alloc();
    }
}

InjectServer::~InjectServer() {
    ecore_main_fd_handler_del(m_handler);
}

void InjectServer::acceptClient() {
    const int peer = m_socket.accept();
    if (peer < 0) {
        return;
    }
    if (auto bus = openServerBus(peer)) {
        addClient(std::move(bus));
    }
}

void InjectServer::addClient(BusPtr bus) {
    const auto place = m_clients.emplace(m_clients.end());
    *place = std::make_unique<InjectClient>(std::move(bus), m_interface,
                                            [this, place] { m_clients.erase(place); });
}

}  // namespace corvane::host
