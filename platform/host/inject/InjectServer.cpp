// The injection server.
#include "platform/host/inject/InjectServer.h"

#include <dlog.h>
#include <systemd/sd-bus.h>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "platform/host/events/ValueText.h"
#include "platform/host/inject/Delivery.h"
#include "platform/host/inject/InjectLimits.h"

namespace corvane::host {

namespace {

int onEvent(sd_bus_message* message, void* client, sd_bus_error* error) {
    return static_cast<InjectPeer*>(client)->emit(message, error);
}

int onWatchCall(sd_bus_message* message, void* client, sd_bus_error*) {
    return static_cast<InjectPeer*>(client)->watch(message);
}

// An exception on a delivery thread has no handler: as on a device, the process ends, but with a
// line in the log.
unsigned deliverOrEnd(const InjectInterface::Method& method, const Values& values,
                      std::string& refusal) {
    try {
        return deliver(*method.event, values);
    } catch (const InvalidValue& invalid) {
        refusal = invalid.what();
        return 0;
    } catch (const std::exception& error) {
        dlog_print(DLOG_PRIORITY_ERROR, "INJECT",
                   "%s: its callback threw on a thread of the platform, which ends the process: %s",
                   method.event->name, error.what());
        throw;
    }
}

}  // namespace

InjectServer::InjectServer(const std::string& path, unsigned threads)
    : m_socket(path), m_interface(&onEvent, &onWatchCall) {
    if (threads > 0) {
        m_threads.emplace(threads);
    }
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
    m_threads.reset();
    setSlotObserver(nullptr, nullptr);
    m_putOff.clear();
    m_queue.run();  // so that watchers see the last changes
}

void InjectServer::acceptClient() {
    try {
        auto peer = m_socket.accept();
        if (peer.get() < 0) {
            return;
        }
        if (m_clients.size() == limits::MOST_PEERS) {
            refuse((std::to_string(limits::MOST_PEERS) + " peers are served already").c_str());
        } else {
            InjectPeers& peers = *this;
            m_clients.push_back(std::make_unique<InjectPeer>(std::move(peer), peers));
            m_refuses = false;
        }
    } catch (const std::exception&) {
        refuse("there is no descriptor or no memory for it");
    }
}

// Logs only the first of several refusals in a row.
void InjectServer::refuse(const char* reason) {
    if (!std::exchange(m_refuses, true)) {
        dlog_print(DLOG_PRIORITY_WARNING, "INJECT", "a peer is refused: %s", reason);
    }
}

bool InjectServer::deliverElsewhere(InjectPeer& client, sd_bus_message* call,
                                    const InjectInterface::Method& method, const Values& values) {
    if (!m_threads) {
        return false;
    }
    // The threads have only the number of the call: messages belong to the main thread.
    const auto id = m_nextId++;
    m_putOff.emplace(id, PutOff{&client, MessagePtr(sd_bus_message_ref(call))});
    const bool isPosted = m_threads->post([this, id, &method, values] {
        std::string refusal;
        const unsigned called = deliverOrEnd(method, values, refusal);
        m_queue.push([this, id, called, refusal] { answer(id, called, refusal); });
    });
    if (!isPosted) {
        m_putOff.erase(id);
        sd_bus_reply_method_errorf(call, SD_BUS_ERROR_LIMITS_EXCEEDED,
                                   "%zu events wait for their thread already",
                                   limits::MOST_WAITING_EVENTS);
    }
    return true;
}

void InjectServer::answer(std::uint64_t id, unsigned called, const std::string& refusal) {
    // Nothing is found if the peer has disconnected in the meantime.
    if (const auto putOff = m_putOff.extract(id)) {
        putOff.mapped().client->answer(putOff.mapped().call.get(), called, refusal);
    }
}

void InjectServer::onWatch() {
    setSlotObserver(&InjectServer::onSlotChange, this);
}

void InjectServer::onSlotChange(void* data, SlotChange change, const char* event,
                                unsigned called) noexcept {
    auto* const self = static_cast<InjectServer*>(data);
    self->m_queue.push([self, change, event, called] { self->tell(change, event, called); });
}

void InjectServer::tell(SlotChange change, const char* event, unsigned called) {
    for (const auto& client : m_clients) {
        client->tell(change, event, called);
    }
}

void InjectServer::onLost(InjectPeer& client) {
    std::erase_if(m_putOff, [&](const auto& putOff) { return putOff.second.client == &client; });
    m_clients.remove_if([&](const auto& other) { return other.get() == &client; });
    const auto watches = [](const auto& other) { return other->watches(); };
    if (std::ranges::none_of(m_clients, watches)) {
        setSlotObserver(nullptr, nullptr);
    }
}

}  // namespace corvane::host
