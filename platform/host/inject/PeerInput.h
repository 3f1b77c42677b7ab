// The bytes from a peer of injection to its D-Bus connection. The connection accepts messages
// of up to 128 MiB and would hold each in memory; here the size in a message's header is checked
// before the connection sees the message.
#pragma once

#include <systemd/sd-bus.h>

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "platform/host/main-loop/Descriptor.h"

namespace corvane::host {

/// Owner: InjectPeer. Threads: main thread. Errors: the constructor throws std::system_error.
/// File descriptors that a peer sends are closed by the system, because none are asked for.
class PeerInput {
public:
    PeerInput();

    /// What the connection reads in place of the peer's socket.
    Descriptor takeOutlet() { return std::move(m_outlet); }

    /// Passes on at most one message from `peer`; call it when `bus` has processed all its input.
    /// Returns whether there is something to process. A message that is too long ends the input.
    bool pass(sd_bus* bus, int peer);

private:
    bool passLine(int peer);
    bool passMessage(int peer);
    bool passBytes(std::string_view bytes);
    bool end();

    Descriptor m_inlet;
    Descriptor m_outlet;
    std::array<char, 16> m_header{};
    std::size_t m_headerSize = 0;  // of the next message, as far as it has come
    std::size_t m_missing = 0;     // of the message that is being passed on
    bool m_hasEnded = false;
};

}  // namespace corvane::host
