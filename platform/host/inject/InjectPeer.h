// One peer connected to injection.
#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/host/events/Values.h"
#include "platform/host/inject/InjectInterface.h"
#include "platform/host/inject/PeerInput.h"
#include "platform/host/main-loop/BusPump.h"
#include "platform/host/slots/Slot.h"

namespace corvane::host {

class InjectPeer;

struct MessageReleaser {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using MessagePtr = std::unique_ptr<sd_bus_message, MessageReleaser>;

/// The server as its clients see it. Threads: main thread.
class InjectPeers {
public:
    virtual ~InjectPeers() = default;

    virtual const InjectInterface& interface() const = 0;

    /// Returns true if a delivery thread takes the event; `call` is answered later.
    virtual bool deliverElsewhere(InjectPeer& client, sd_bus_message* call,
                                  const InjectInterface::Method& method, const Values& values) = 0;

    /// Sends the watchers all changes up to now.
    virtual void tellWatchers() = 0;

    /// The peer watches from now on.
    virtual void onWatch() = 0;

    /// The peer has disconnected; destroys the client.
    virtual void onLost(InjectPeer& client) = 0;
};

/// Owner: InjectServer. Threads: main thread. Errors: what a callback throws is rethrown into
/// the main loop. A peer that doesn't read what it is sent is disconnected.
class InjectPeer {
public:
    /// `peer` is the connected socket. Throws std::system_error, std::bad_alloc.
    InjectPeer(Descriptor peer, InjectPeers& peers);

    int emit(sd_bus_message* message, sd_bus_error* error);
    int watch(sd_bus_message* message);

    /// Answers a call put off; `refusal` is empty unless the values were refused.
    void answer(sd_bus_message* call, unsigned called, const std::string& refusal);

    bool watches() const { return m_watches; }

    /// Sends the signal if the peer watches. One that doesn't read is disconnected.
    void tell(SlotChange change, const char* event, unsigned called);

private:
    bool feed();
    bool leavesUnread() const;
    void disconnect(const char* reason);

    InjectPeers& m_peers;
    PeerInput m_input;
    BusPump m_pump;
    bool m_watches = false;
    bool m_isDisconnected = false;
};

}  // namespace corvane::host
