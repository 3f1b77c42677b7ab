// The 42 kinds of event with arguments made from a stamp.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "tests/daemon/stress/Stamp.h"

class IRequestBroker;

/// A plugin's side of all kinds.
class StampReceiver {
public:
    virtual ~StampReceiver() = default;

    /// What was received, as far as the event has room for it; `isOf` tells whether all
    /// arguments are those of a stamp.
    struct Received {
        std::size_t kind;
        std::optional<unsigned> thread;
        std::optional<unsigned> number;
    };
    class Arguments {
    public:
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
    /// As the platform would, in memory that is overwritten on return.
    virtual void deliver(Stamp stamp) const = 0;
    /// Whether the event has room for who sent it.
    virtual bool tellsThread() const = 0;
};

const std::vector<std::unique_ptr<const StampedEvent>>& stampedEvents();
