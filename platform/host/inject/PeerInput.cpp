#include "platform/host/inject/PeerInput.h"

#include <dlog.h>
#include <endian.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <system_error>

#include "platform/host/inject/InjectLimits.h"

namespace corvane::host {

namespace {

constexpr std::size_t PIECE_SIZE = 16384;
using Piece = std::array<char, PIECE_SIZE>;

// The size of the message that has this header. A header of unknown byte order or version counts as
// too long.
std::uint64_t messageSize(const std::array<char, 16>& header) {
    const auto number = [&](std::size_t at) -> std::uint64_t {
        std::uint32_t value = 0;
        std::memcpy(&value, &header[at], sizeof value);
        return header[0] == 'l' ? le32toh(value) : be32toh(value);
    };
    if ((header[0] != 'l' && header[0] != 'B') || header[3] != 1) {
        return UINT64_MAX;
    }
    return header.size() + (number(12) + 7) / 8 * 8 + number(4);
}

}  // namespace

PeerInput::PeerInput() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
    m_inlet = Descriptor(ends[0]);
    m_outlet = Descriptor(ends[1]);
}

bool PeerInput::pass(sd_bus* bus, int peer) {
    if (m_hasEnded) {
        return false;
    }
    if (sd_bus_is_ready(bus) > 0) {
        return passMessage(peer);
    }
    // Only the connection knows which line of the greeting is the last. It begins with messages
    // when its answers have been written; they are so short that a peer that takes none of them
    // doesn't read.
    return (sd_bus_get_events(bus) & POLLOUT) == 0 ? passLine(peer) : end();
}

bool PeerInput::passLine(int peer) {
    Piece piece;
    const ssize_t seen = recv(peer, piece.data(), piece.size(), MSG_PEEK | MSG_DONTWAIT);
    if (seen <= 0) {
        return seen < 0 && errno == EAGAIN ? false : end();
    }
    auto* const seenEnd = piece.data() + seen;
    auto* const lineEnd = std::find(piece.data(), seenEnd, '\n');
    const auto size = static_cast<std::size_t>(lineEnd - piece.data()) + (lineEnd != seenEnd);
    recv(peer, piece.data(), size, MSG_DONTWAIT);
    return passBytes({piece.data(), size});
}

bool PeerInput::passMessage(int peer) {
    Piece piece;
    char* const place = m_missing == 0 ? m_header.data() + m_headerSize : piece.data();
    const std::size_t wanted =
        m_missing == 0 ? m_header.size() - m_headerSize : std::min(m_missing, piece.size());
    const ssize_t received = recv(peer, place, wanted, MSG_DONTWAIT);
    if (received <= 0) {
        return received < 0 && errno == EAGAIN ? false : end();
    }
    const auto size = static_cast<std::size_t>(received);
    if (m_missing > 0) {
        m_missing -= size;
        return passBytes({piece.data(), size});
    }
    m_headerSize += size;
    if (m_headerSize < m_header.size()) {
        return passMessage(peer);
    }
    m_headerSize = 0;
    const auto announced = messageSize(m_header);
    if (announced > limits::MOST_MESSAGE_BYTES) {
        dlog_print(DLOG_PRIORITY_WARNING, "INJECT",
                   "a peer is disconnected: its message is broken or has more than %zu bytes",
                   limits::MOST_MESSAGE_BYTES);
        return end();
    }
    m_missing = static_cast<std::size_t>(announced) - m_header.size();
    passBytes({m_header.data(), m_header.size()});
    if (m_missing > 0) {
        passMessage(peer);
    }
    return true;
}

// The connection has taken all that came before, so there is room.
bool PeerInput::passBytes(std::string_view bytes) {
    const ssize_t sent = send(m_inlet.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(bytes.size()) || end();
}

bool PeerInput::end() {
    m_hasEnded = true;
    shutdown(m_inlet.get(), SHUT_WR);
    return true;
}

}  // namespace corvane::host
