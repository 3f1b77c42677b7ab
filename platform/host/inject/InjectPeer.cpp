// One peer connected to injection.
#include "platform/host/inject/InjectPeer.h"

#include <dlog.h>
#include <sys/socket.h>
#include <systemd/sd-id128.h>

#include <cstdint>
#include <exception>
#include <system_error>
#include <utility>

#include "platform/host/events/ValueText.h"
#include "platform/host/inject/Delivery.h"
#include "platform/host/inject/InjectLimits.h"
#include "platform/host/inject/MessageValues.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

// D-Bus tools call Hello of the bus first, so the server answers it.
int onHello(sd_bus_message* message, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(message, "s", ":1.1");
}

constexpr sd_bus_vtable GREETING[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Hello", "", "s", &onHello, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

void check(int result) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category());
    }
}

// The server's end of a connection that reads from one descriptor and writes to another.
BusPtr openServerBus(Descriptor input, Descriptor output) {
    sd_bus* made = nullptr;
    check(sd_bus_new(&made));
    BusPtr bus(made);
    check(sd_bus_set_fd(made, input.get(), output.get()));
    input.release();
    output.release();
    sd_id128_t id;
    check(sd_id128_randomize(&id));
    check(sd_bus_set_server(made, 1, id));
    check(sd_bus_negotiate_fds(made, 0));
    check(sd_bus_start(made));
    return bus;
}

}  // namespace

InjectPeer::InjectPeer(Descriptor peer, InjectPeers& peers)
    : m_peers(peers),
      m_pump{openServerBus(m_input.takeOutlet(), Descriptor::duplicate(peer.get())),
             std::move(peer), [this] { m_peers.onLost(*this); }, [this] { return feed(); }} {
    check(sd_bus_add_object_vtable(m_pump.bus(), nullptr, INJECT_PATH, INJECT_INTERFACE,
                                   peers.interface().vtable(), this));
    check(sd_bus_add_object_vtable(m_pump.bus(), nullptr, "/org/freedesktop/DBus",
                                   "org.freedesktop.DBus", GREETING, nullptr));
    m_pump.rearm();
}

bool InjectPeer::feed() {
    if (!m_isDisconnected && leavesUnread()) {
        disconnect("a peer that doesn't read its answers is disconnected");
    }
    return m_input.pass(m_pump.bus(), m_pump.fd());
}

bool InjectPeer::leavesUnread() const {
    std::uint64_t unread = 0;
    const auto most = m_watches ? limits::MOST_UNREAD_SIGNALS : limits::MOST_UNREAD_ANSWERS;
    return sd_bus_get_n_queued_write(m_pump.bus(), &unread) < 0 || unread > most;
}

// The pump detects the end of the connection and has the client removed; here the client may be in
// the middle of a call.
void InjectPeer::disconnect(const char* reason) {
    dlog_print(DLOG_PRIORITY_WARNING, "INJECT", "%s", reason);
    shutdown(m_pump.fd(), SHUT_RDWR);
    m_isDisconnected = true;
    m_watches = false;
}

int InjectPeer::emit(sd_bus_message* message, sd_bus_error* error) {
    const auto& method = m_peers.interface().method(sd_bus_message_get_member(message));
    try {
        const auto values = readValues(message, *method.event);
        if (m_peers.deliverElsewhere(*this, message, method, values)) {
            return 1;
        }
        unsigned called = 1;
        std::string refusal;
        m_pump.guard([&] {
            try {
                called = deliver(*method.event, values);
            } catch (const InvalidValue& invalid) {
                refusal = invalid.what();
            }
        });
        if (!refusal.empty()) {
            return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, refusal.c_str());
        }
        m_peers.tellWatchers();  // before the answer, so that signals precede it
        return sd_bus_reply_method_return(message, "u", called);
    } catch (const InvalidValue& invalid) {
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, invalid.what());
    } catch (const std::exception& failure) {
        return sd_bus_error_set(error, SD_BUS_ERROR_FAILED, failure.what());
    }
}

void InjectPeer::answer(sd_bus_message* call, unsigned called, const std::string& refusal) {
    if (refusal.empty()) {
        sd_bus_reply_method_return(call, "u", called);
    } else {
        sd_bus_reply_method_errorf(call, SD_BUS_ERROR_INVALID_ARGS, "%s", refusal.c_str());
    }
    m_pump.rearm();
}

int InjectPeer::watch(sd_bus_message* message) {
    m_watches = true;
    m_peers.onWatch();
    // Read after the watch has begun: a change in between is reported twice, never lost.
    sd_bus_message* made = nullptr;
    int result = sd_bus_message_new_method_return(message, &made);
    const MessagePtr reply(made);
    result = result < 0 ? result : sd_bus_message_open_container(made, SD_BUS_TYPE_ARRAY, "s");
    for (const auto& event : allEvents()) {
        if (result >= 0 && callbackIsSet(event)) {
            result = sd_bus_message_append(made, "s", event.name);
        }
    }
    result = result < 0 ? result : sd_bus_message_close_container(made);
    return result < 0 ? result : sd_bus_send(nullptr, made, nullptr);
}

void InjectPeer::tell(SlotChange change, const char* event, unsigned called) {
    if (!m_watches) {
        return;
    }
    auto* const bus = m_pump.bus();
    if (leavesUnread()) {
        disconnect("a watcher that doesn't read is disconnected");
        return;
    }
    if (change == SlotChange::Delivered) {
        sd_bus_emit_signal(bus, INJECT_PATH, INJECT_INTERFACE, "Delivered", "su", event, called);
    } else {
        sd_bus_emit_signal(bus, INJECT_PATH, INJECT_INTERFACE,
                           change == SlotChange::Set ? "Set" : "Unset", "s", event);
    }
    m_pump.rearm();
}

}  // namespace corvane::host
