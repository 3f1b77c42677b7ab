// The daemon's end of injection, as the command sees it.
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

/// The socket to use: `given` unless it is empty, else CORVANE_INJECT_SOCKET, else
/// corvane/inject.sock in XDG_RUNTIME_DIR, else in /run.
std::string socketPath(const std::string& given);

/// What happened to a callback.
struct Notice {
    enum class Change { Set, Unset, Delivered };

    Change change;
    std::string event;
    unsigned called = 0;  // by a delivery
};

struct BusCloser {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

/// A connection to a daemon. Owner: the command, on one thread. All operations throw
/// std::runtime_error with what went wrong and what to do about it.
class InjectClient {
public:
    /// Connects to the daemon that listens on `path`.
    explicit InjectClient(const std::string& path);
    InjectClient(const InjectClient&) = delete;
    InjectClient& operator=(const InjectClient&) = delete;

    /// Makes the daemon deliver the event. Returns the number of callbacks called.
    unsigned emit(const corvane::host::Event& event, const corvane::host::Values& values);

    /// From now on there are notices. Returns the events whose callbacks are set.
    std::vector<std::string> watch();

    /// Waits for a notice until `limit`, for ever if it is empty. Nothing is returned after the
    /// limit, or when `stop`, unless it is -1, can be read.
    using Limit = std::optional<std::chrono::steady_clock::time_point>;
    std::optional<Notice> nextNotice(Limit limit, int stop = -1);

private:
    static int onMessage(sd_bus_message* message, void* self, sd_bus_error* error);

    std::unique_ptr<sd_bus, BusCloser> m_bus;
    std::deque<Notice> m_notices;
};

}  // namespace corvane::tool
