// Lets a developer make the platform's events: a D-Bus server without a bus on a
// Unix socket, for peers of the same user. It only calls callbacks; what the
// platform knows of real devices stays as it is.
#pragma once

#include "BusPump.h"
#include "Deliveries.h"
#include "InjectInterface.h"
#include "InjectSocket.h"

#include <Ecore.h>

#include <list>
#include <memory>
#include <span>
#include <string>

namespace corvane::host {

/// Owner: Product. Threads: main thread, after ecore_init(); callbacks are called on it.
/// Errors: what a callback throws leaves through the main loop. A peer that breaks the
/// protocol is dropped.
class InjectServer {
public:
    /// Throws std::runtime_error if the socket can't be had.
    InjectServer(const std::string& path, std::span<const Delivery> deliveries);
    ~InjectServer();
    InjectServer(const InjectServer&) = delete;
    InjectServer& operator=(const InjectServer&) = delete;

private:
    void acceptClient();
    void addClient(BusPtr bus);

    InjectSocket m_socket;
    InjectInterface m_interface;
    std::list<std::unique_ptr<InjectClient>> m_clients;
    Ecore_Fd_Handler* m_handler;
};

}  // namespace corvane::host
