// The injection server: a D-Bus server without a bus on a Unix socket, on which a developer
// makes the platform's events. It only calls callbacks; the platform's state of real devices
// doesn't change.
#pragma once

#include <Ecore.h>

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/host/inject/DeliveryThreads.h"
#include "platform/host/inject/InjectInterface.h"
#include "platform/host/inject/InjectPeer.h"
#include "platform/host/inject/InjectSocket.h"
#include "platform/host/main-loop/MainLoopQueue.h"

namespace corvane::host {

/// Owner: Product. Threads: main thread, after ecore_init(); callbacks are called on it, or
/// on threads of the server. Errors: what a callback throws leaves through the main loop; on
/// a thread of the server it ends the process. A peer that breaks the protocol is dropped.
class InjectServer : private InjectPeers {
public:
    /// Events are delivered by `threads` threads, or by the main loop if there are none. Throws
    /// std::runtime_error if the socket can't be opened.
    InjectServer(const std::string& path, unsigned threads);

    /// Waits for the callbacks that are running.
    ~InjectServer() override;
    InjectServer(const InjectServer&) = delete;
    InjectServer& operator=(const InjectServer&) = delete;

private:
    struct PutOff {
        InjectPeer* client;
        MessagePtr call;
    };

    const InjectInterface& interface() const override { return m_interface; }
    bool deliverElsewhere(InjectPeer& client, sd_bus_message* call,
                          const InjectInterface::Method& method, const Values& values) override;
    void tellWatchers() override { m_queue.run(); }
    void onWatch() override;
    void onLost(InjectPeer& client) override;

    void acceptClient();
    void refuse(const char* reason);
    void answer(std::uint64_t id, unsigned called, const std::string& refusal);
    void tell(SlotChange change, const char* event, unsigned called);
    static void onSlotChange(void* self, SlotChange change, const char* event,
                             unsigned called) noexcept;

    InjectSocket m_socket;
    InjectInterface m_interface;
    MainLoopQueue m_queue;
    std::list<std::unique_ptr<InjectPeer>> m_clients;
    bool m_refuses = false;                    // the last peer was refused
    std::map<std::uint64_t, PutOff> m_putOff;  // calls, answered when a thread has delivered
    std::uint64_t m_nextId = 0;
    std::optional<DeliveryThreads> m_threads;
    Ecore_Fd_Handler* m_handler;
};

}  // namespace corvane::host
