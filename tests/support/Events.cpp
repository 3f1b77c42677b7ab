#include "tests/support/Events.h"

#include <IRequestBroker.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "tests/support/FakePlatform.h"
#include "tests/support/SampleArguments.h"

namespace {

template <typename CallbackFunction>
struct ArgumentsOf;
template <typename... All>
struct ArgumentsOf<void (*)(All...)> {
    using Tuple = std::tuple<All...>;  // the last is the user data
};

/// A member pointer to a virtual function contains its offset in the vtable, plus 1 except on ARM.
/// The destructor occupies the first two entries.
template <typename Operation>
int slotOf(Operation operation) {
    std::uintptr_t offset;
    static_assert(sizeof operation >= sizeof offset);
    std::memcpy(&offset, &operation, sizeof offset);
    return static_cast<int>(offset / sizeof(void*)) - 2;
}

template <typename Function>
Function atSlot(IRequestBroker& broker, int slot) {
    void** table;
    std::memcpy(&table, static_cast<const void*>(&broker), sizeof table);
    return reinterpret_cast<Function>(table[slot + 2]);
}

template <typename... All>
void receive(All... all) {
    const auto arguments = std::tie(all...);
    [&arguments]<std::size_t... Index>(std::index_sequence<Index...>) {
        std::string text;
        ((text += describe(std::get<Index>(arguments)) + " "), ...);
        static_cast<Receiver*>(std::get<sizeof...(All) - 1>(arguments))->receive(text);
    }
    (std::make_index_sequence<sizeof...(All) - 1>{});
}

template <typename CallbackFunction>
class TypedEvent : public Event {
public:
    using Subscribe = int (IRequestBroker::*)(CallbackFunction, void*);
    using Unsubscribe = int (IRequestBroker::*)();

    Subscribe m_subscribe;
    Unsubscribe m_unsubscribe;

    int subscribe(IRequestBroker& broker, Receiver& receiver) const override {
        return (broker.*m_subscribe)(receive, &receiver);
    }
    int unsubscribe(IRequestBroker& broker) const override { return (broker.*m_unsubscribe)(); }
    int subscribeBySlot(IRequestBroker& broker, int slot, Receiver& receiver) const override {
        using Function = int (*)(IRequestBroker*, CallbackFunction, void*);
        return atSlot<Function>(broker, slot)(&broker, receive, &receiver);
    }
    int unsubscribeBySlot(IRequestBroker& broker, int slot) const override {
        return atSlot<int (*)(IRequestBroker*)>(broker, slot)(&broker);
    }
    int subscribeSlot() const override { return slotOf(m_subscribe); }
    int unsubscribeSlot() const override { return slotOf(m_unsubscribe); }

    std::string deliver() const override {
        using All = typename ArgumentsOf<CallbackFunction>::Tuple;
        return [this]<std::size_t... Index>(std::index_sequence<Index...>) {
            SampleBuffers buffers;
            const std::tuple<std::tuple_element_t<Index, All>...> arguments{
                sample<std::tuple_element_t<Index, All>>(buffers, static_cast<int>(Index))...};
            std::string expected;
            ((expected += describeExpected(std::get<Index>(arguments)) + " "), ...);
            return fake_platform::deliver(setFunction, std::get<Index>(arguments)...) ? expected
                                                                                      : "not set";
        }
        (std::make_index_sequence<std::tuple_size_v<All> - 1>{});
    }
};

std::vector<std::unique_ptr<const Event>> makeEvents() {
    std::vector<std::unique_ptr<const Event>> events;
#define EVENT(source_, type_, value_, subscribe_, unsubscribe_, set_, unset_, Callback, types_) \
    {                                                                                           \
        auto event = std::make_unique<TypedEvent<Callback>>();                                  \
        event->source = #source_;                                                               \
        event->typeName = #type_;                                                               \
        event->type = type_;                                                                    \
        event->value = value_;                                                                  \
        event->subscribeName = #subscribe_;                                                     \
        event->unsubscribeName = #unsubscribe_;                                                 \
        event->setFunction = #set_;                                                             \
        event->unsetFunction = #unset_;                                                         \
        event->callbackName = #Callback;                                                        \
        event->argumentTypes = types_;                                                          \
        event->m_subscribe = &IRequestBroker::subscribe_;                                       \
        event->m_unsubscribe = &IRequestBroker::unsubscribe_;                                   \
        events.push_back(std::move(event));                                                     \
    }
#include "tests/support/EventTable.def"
#undef EVENT
    return events;
}

}  // namespace

const std::vector<const Event*>& allEvents() {
    static const std::vector<std::unique_ptr<const Event>> events = makeEvents();
    static const std::vector<const Event*> pointers = [] {
        std::vector<const Event*> all;
        std::ranges::transform(events, std::back_inserter(all),
                               [](const auto& e) { return e.get(); });
        return all;
    }();
    return pointers;
}

const Event& eventOf(CallbackType type) {
    for (const Event* const event : allEvents()) {
        if (event->type == type) {
            return *event;
        }
    }
    throw std::out_of_range("no such event");
}
