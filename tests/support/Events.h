// The 42 events for parametrised tests: the names of EventTable.def, and each event
// driven from both ends, the platform's and a plugin's.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "daemon/src/Callback/CallbackType.h"

class IRequestBroker;

/// A plugin's callback; its user data points here.
class Receiver {
public:
    virtual ~Receiver() = default;
    /// Called for each event with its arguments as text.
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
    std::string argumentTypes;  // of the signature texts, without the user data

    virtual ~Event() = default;

    virtual int subscribe(IRequestBroker& broker, Receiver& receiver) const = 0;
    virtual int unsubscribe(IRequestBroker& broker) const = 0;
    /// Call the operation at a slot of the table of virtual functions.
    virtual int subscribeBySlot(IRequestBroker& broker, int slot, Receiver& receiver) const = 0;
    virtual int unsubscribeBySlot(IRequestBroker& broker, int slot) const = 0;
    /// The slots of the two operations, counted from the first behind the destructor.
    virtual int subscribeSlot() const = 0;
    virtual int unsubscribeSlot() const = 0;
    /// Delivers sample arguments as the platform would, in buffers that are gone on
    /// return. What a plugin is to receive, as text, or "not set".
    virtual std::string deliver() const = 0;
};

const std::vector<const Event*>& allEvents();
const Event& eventOf(CallbackType type);

inline std::ostream& operator<<(std::ostream& out, const Event* event) {
    return out << event->source;
}
