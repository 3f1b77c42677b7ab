// Calls to and from the running BlueZ. The main loop delivers the answers.
#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/host/bluez/bus/Properties.h"
#include "platform/host/main-loop/BusPump.h"

namespace corvane::host {

struct BluezMessageReleaser {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BluezMessage = std::unique_ptr<sd_bus_message, BluezMessageReleaser>;

/// The flag of methods that sd-bus passes on from every caller. BluezPeer::serve() then rejects
/// all but BlueZ, which need not be privileged.
inline constexpr auto ANY_CALLER = SD_BUS_VTABLE_UNPRIVILEGED;

/// Owner: BluezClient. Threads: main thread. Errors: none of its own; a call that cannot be
/// sent gets no answer.
class BluezPeer {
public:
    /// `answer` is null if BlueZ answered with an error.
    using OnAnswer = std::function<void(sd_bus_message* answer)>;

    /// Uses a connection until attach(nullptr).
    void attach(BusPump* pump);

    /// Sets the unique bus name of the owner of org.bluez, empty if there is none. Calls are
    /// addressed to it rather than to org.bluez, because a successor would not know the
    /// objects they are about.
    void setOwner(std::string owner) { m_owner = std::move(owner); }
    const std::string& owner() const { return m_owner; }

    /// Returns null if org.bluez has no owner.
    BluezMessage makeCall(const std::string& path, std::string_view interface,
                          const char* method) const;

    /// Sends a call made by makeCall(), or nothing if it is null. `onAnswer` is called at most
    /// once, never from here, and not after the connection has ended. It may throw
    /// MalformedMessage, and what a callback throws.
    void send(const BluezMessage& call, OnAnswer onAnswer);

    /// Queries a property.
    void get(const std::string& path, std::string_view interface, const char* property,
             OnAnswer onAnswer);

    /// Runs the body of a message handler. A malformed message is dropped; any other exception
    /// leaves through the main loop.
    void handle(const std::function<void()>& body);

    /// Runs the body of a method that only BlueZ may call. Returns the handler's result.
    int serve(sd_bus_message* call, sd_bus_error* error, const std::function<void()>& body);

    /// Returns true if BlueZ itself sent the message.
    bool isFromOwner(sd_bus_message* message) const;

    /// Makes the main loop send queued messages.
    void flush();

    sd_bus* bus() const { return m_pump->bus(); }

private:
    BusPump* m_pump = nullptr;
    std::string m_owner;
};

}  // namespace corvane::host
