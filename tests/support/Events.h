// The 42 events for parametrised tests: the names from EventTable.def, and functions that act as
// the platform and as a plugin for each event.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "daemon/src/Callback/CallbackType.h"

class IRequestBroker;

/// Receives the events of a plugin's callbacks, whose user data points to it.
class Receiver {
public:
    virtual ~Receiver() = default;
    /// Called for each event, with its arguments as text.
    virtual void receive(const std::string& event) { events.push_back(event); }

    std::vector<std::string> events;
};

/// One kind of event. Stateless, lives as long as the program.
class Event {
public:
    std::string source;
    std::string typeName;
    CallbackType type;
    unsigned int value;
    std::string subscribeName;
    std::string unsubscribeName;
    std::string setFunction;
    std::string unsetFunction;
    std::string callbackName;
    std::string argumentTypes;  // as in EventTable.def, without the user data

    virtual ~Event() = default;

    virtual int subscribe(IRequestBroker& broker, Receiver& receiver) const = 0;
    virtual int unsubscribe(IRequestBroker& broker) const = 0;
    /// Call the operation at a slot of the broker's vtable.
    virtual int subscribeBySlot(IRequestBroker& broker, int slot, Receiver& receiver) const = 0;
    virtual int unsubscribeBySlot(IRequestBroker& broker, int slot) const = 0;
    /// Return the vtable slots of the two operations. The first slot after the destructor is 0.
    virtual int subscribeSlot() const = 0;
    virtual int unsubscribeSlot() const = 0;
    /// Delivers sample arguments as the platform does, in buffers that are freed on return. Returns
    /// the arguments that a plugin must receive, as text, or "not set" if no callback is set.
    virtual std::string deliver() const = 0;
};

const std::vector<const Event*>& allEvents();
const Event& eventOf(CallbackType type);

inline std::ostream& operator<<(std::ostream& out, const Event* event) {
    return out << event->source;
}
