// Calls to the BlueZ that runs now. Answers come later, through the main loop.
#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/host/bluetooth/bluez/bus/Properties.h"
#include "platform/host/main-loop/BusPump.h"

namespace corvane::host {

struct BluezMessageReleaser {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BluezMessage = std::unique_ptr<sd_bus_message, BluezMessageReleaser>;

/// Owner: BluezClient. Threads: main thread. Errors: none of its own; a call that can't be
/// sent gets no answer.
class BluezPeer {
public:
    /// Null for an error.
    using OnAnswer = std::function<void(sd_bus_message* answer)>;

    /// The connection, until it is taken away by attach(nullptr).
    void attach(BusPump* pump);

    /// The bus's own name of who owns org.bluez; empty if nobody does. Calls go there: a
    /// successor knows nothing of what they are about.
    void setOwner(std::string owner) { m_owner = std::move(owner); }
    const std::string& owner() const { return m_owner; }

    /// Null if there is nobody to call.
    BluezMessage makeCall(const std::string& path, std::string_view interface,
                          const char* method) const;

    /// `onAnswer` is called at most once, never from here, and not after the connection has
    /// gone. It may throw MalformedMessage, and what a callback throws.
    void send(const BluezMessage& call, OnAnswer onAnswer);

    /// Asks for the value of a property.
    void get(const std::string& path, std::string_view interface, const char* property,
             OnAnswer onAnswer);

    /// Runs the body of a message handler: a message that isn't what it should be is
    /// dropped, anything else is thrown on to the main loop.
    void handle(const std::function<void()>& body);

    /// As a message handler's first step: whether BlueZ itself sent the message.
    bool isFromOwner(sd_bus_message* message) const;

    /// Makes the main loop send what was queued.
    void flush();

    sd_bus* bus() const { return m_pump->bus(); }

private:
    BusPump* m_pump = nullptr;
    std::string m_owner;
};

}  // namespace corvane::host
