#include "tests/daemon/stress/StampedEvents.h"

#include <IRequestBroker.h>

#include <string>
#include <tuple>
#include <utility>

#include "tests/support/FakePlatform.h"

namespace {

template <typename CallbackFunction, std::size_t Kind>
class TypedEvent;

template <typename... All, std::size_t Kind>
class TypedEvent<void (*)(All...), Kind> : public StampedEvent {
public:
    using Callback = void (*)(All...);
    using Subscribe = int (IRequestBroker::*)(Callback, void*);
    using Unsubscribe = int (IRequestBroker::*)();

    TypedEvent(std::string setFunction, Subscribe subscribing, Unsubscribe unsubscribing)
        : m_setFunction(std::move(setFunction)),
          m_subscribe(subscribing),
          m_unsubscribe(unsubscribing) {}

    void subscribe(IRequestBroker& broker, StampReceiver& receiver) const override {
        (broker.*m_subscribe)(receive, &receiver);
    }
    void unsubscribe(IRequestBroker& broker) const override { (broker.*m_unsubscribe)(); }

    void deliver(Stamp stamp) const override {
        [&]<std::size_t... Index>(std::index_sequence<Index...>) {
            // The temporaries live until the call has returned.
            fake_platform::deliver<Argument<Index>...>(
                m_setFunction, stamp::Lent<Argument<Index>>(stamp, placeOf(Index)).get()...);
        }
        (std::make_index_sequence<COUNT>{});
    }

    bool tellsThread() const override {
        return [&]<std::size_t... Index>(std::index_sequence<Index...>) {
            stamp::Reader reader;
            (stamp::look(stamp::Lent<Argument<Index>>({0, 0}, placeOf(Index)).get(), reader), ...);
            return reader.thread.has_value();
        }
        (std::make_index_sequence<COUNT>{});
    }

private:
    static constexpr std::size_t COUNT = sizeof...(All) - 1;  // without the user data
    using Tuple = std::tuple<All...>;
    template <std::size_t Index>
    using Argument = std::tuple_element_t<Index, Tuple>;

    static constexpr unsigned placeOf(std::size_t index) {
        return static_cast<unsigned>(index) * 16;
    }

    class ReceivedArguments final : public StampReceiver::Arguments {
    public:
        explicit ReceivedArguments(const Tuple& all) : m_all(all) {}
        bool areOf(Stamp stamp) const override {
            return [&]<std::size_t... Index>(std::index_sequence<Index...>) {
                return (isOf<Index>(stamp) && ...);
            }
            (std::make_index_sequence<COUNT>{});
        }

    private:
        template <std::size_t Index>
        bool isOf(Stamp stamp) const {
            stamp::Checker checker(stamp, placeOf(Index));
            stamp::look(std::get<Index>(m_all), checker);
            return checker.holds;
        }

        const Tuple& m_all;
    };

    static void receive(All... all) {
        const Tuple arguments(all...);
        stamp::Reader reader;
        [&]<std::size_t... Index>(std::index_sequence<Index...>) {
            (stamp::look(std::get<Index>(arguments), reader), ...);
        }
        (std::make_index_sequence<COUNT>{});
        static_cast<StampReceiver*>(std::get<COUNT>(arguments))
            ->receive({Kind, reader.thread, reader.number}, ReceivedArguments(arguments));
    }

    std::string m_setFunction;
    Subscribe m_subscribe;
    Unsubscribe m_unsubscribe;
};

std::vector<std::unique_ptr<const StampedEvent>> makeEvents() {
    std::vector<std::unique_ptr<const StampedEvent>> events;
    constexpr std::size_t first = __COUNTER__ + 1;
#define EVENT(source, type, value, subscribe, unsubscribe, set, unset, Callback, types) \
    events.push_back(std::make_unique<TypedEvent<Callback, __COUNTER__ - first>>(       \
        #set, &IRequestBroker::subscribe, &IRequestBroker::unsubscribe));
#include "tests/support/EventTable.def"
#undef EVENT
    return events;
}

}  // namespace

const std::vector<std::unique_ptr<const StampedEvent>>& stampedEvents() {
    static const auto events = makeEvents();
    return events;
}
