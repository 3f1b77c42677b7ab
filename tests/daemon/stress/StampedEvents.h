// The 42 kinds of event, with arguments generated from a stamp.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "tests/daemon/stress/Stamp.h"

class IRequestBroker;

/// Receives all kinds of event, as a plugin.
class StampReceiver {
public:
    virtual ~StampReceiver() = default;

    /// The kind of a received event, and its thread and number if its arguments can hold them.
    struct Received {
        std::size_t kind;
        std::optional<unsigned> thread;
        std::optional<unsigned> number;
    };
    class Arguments {
    public:
        /// Returns true if all arguments are those generated from `stamp`.
        virtual bool areOf(Stamp stamp) const = 0;

    protected:
        ~Arguments() = default;
    };
    virtual void receive(const Received& received, const Arguments& arguments) = 0;
};

/// A kind of event. Stateless, lives as long as the program.
class StampedEvent {
public:
    virtual ~StampedEvent() = default;

    virtual void subscribe(IRequestBroker& broker, StampReceiver& receiver) const = 0;
    virtual void unsubscribe(IRequestBroker& broker) const = 0;
    /// Delivers the event as the platform does, in memory that is overwritten on return.
    virtual void deliver(Stamp stamp) const = 0;
    /// Returns true if the arguments can hold the sending thread.
    virtual bool tellsThread() const = 0;
};

const std::vector<std::unique_ptr<const StampedEvent>>& stampedEvents();
