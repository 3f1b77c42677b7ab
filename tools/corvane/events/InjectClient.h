// A connection to the daemon's injection socket: it emits events and watches callbacks.
#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::tool {

/// Returns `given` unless it is empty; otherwise CORVANE_INJECT_SOCKET; otherwise
/// corvane/inject.sock in XDG_RUNTIME_DIR, or in /run without that variable.
std::string socketPath(const std::string& given);

/// The result of a delivery, in words.
std::string deliveredText(unsigned called);

/// A change of a callback.
struct Notice {
    enum class Change { Set, Unset, Delivered };

    Change change;
    std::string event;
    unsigned called = 0;  // number of callbacks that a delivery called
};

struct BusCloser {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

/// A connection to a daemon. Owner: the command, on one thread. Errors: std::runtime_error, whose
/// text names the cause and a remedy.
class InjectClient {
public:
    /// Connects to the daemon that listens on `path`.
    explicit InjectClient(const std::string& path);
    InjectClient(const InjectClient&) = delete;
    InjectClient& operator=(const InjectClient&) = delete;

    /// Makes the daemon deliver the event. Returns the number of callbacks called.
    unsigned emit(const corvane::host::Event& event, const corvane::host::Values& values);

    /// Asks for notices from now on. Returns the events whose callbacks are set.
    std::vector<std::string> watch();

    /// Waits for a notice until `limit`, without a limit if it is empty. Returns nothing after the
    /// limit, or when the descriptor `stop` becomes readable (-1: none).
    using Limit = std::optional<std::chrono::steady_clock::time_point>;
    std::optional<Notice> nextNotice(Limit limit, int stop = -1);

private:
    static int onMessage(sd_bus_message* message, void* self, sd_bus_error* error);

    std::unique_ptr<sd_bus, BusCloser> m_bus;
    std::deque<Notice> m_notices;
};

}  // namespace corvane::tool
