// Subscribes twice to each kind of event, delivers it and unsubscribes, while allocations fail.
#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/TaskInvokerImpl.h"
#include "tests/daemon/allocation/Allocations.h"
#include "tests/daemon/allocation/Prepare.h"
#include "tests/daemon/allocation/Sweep.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/SampleArguments.h"

namespace {

struct Received {
    int events = 0;
    int addresses = 0;  // of device connections; each task frees its address
};

template <typename... All>
void receive(All... all) {
    const auto arguments = std::tie(all...);
    auto* received = static_cast<Received*>(std::get<sizeof...(All) - 1>(arguments));
    ++received->events;
    const auto look = [received](auto argument) {
        if constexpr (std::is_same_v<decltype(argument), bt_device_connection_info_s*>) {
            received->addresses += argument->remote_address == nullptr ? 0 : 1;
        }
    };
    (look(all), ...);
}

template <typename CallbackFunction>
class EventScenario;

template <typename... All>
class EventScenario<void (*)(All...)> : public Scenario {
public:
    using Subscribe = int (IRequestBroker::*)(void (*)(All...), void*);
    using Unsubscribe = int (IRequestBroker::*)();

    EventScenario(std::string setFunction, Subscribe subscribing, Unsubscribe unsubscribing)
        : m_setFunction(std::move(setFunction)),
          m_subscribe(subscribing),
          m_unsubscribe(unsubscribing) {
        prepareDelegator();
    }
    ~EventScenario() override { unsubscribe(m_broker); }

    void run() override {
        for (int i = 0; i < 2; ++i) {
            if (attempt([this] { subscribe(m_broker); })) {
                ++m_subscriptions;
            }
            require(isSet() == (m_subscriptions > 0), "set without a subscriber, or not set");
        }
        const bool isDelivered = attempt([this] { deliver(); });
        require(isDelivered ? m_received.events == m_subscriptions
                            : m_received.events < m_subscriptions,
                "not every subscription, and only those, served");
        require(m_received.addresses + 1 >= allocations::stringsMade() || !CARRIES_CONNECTION,
                "more than one address lost");
        if (attempt([this] { unsubscribe(m_broker); })) {
            m_subscriptions = 0;
        }
        require(isSet() == (m_subscriptions > 0), "still set, or unset with a subscription left");
    }

    void check() override {
        // A task frees its address after it has run. Otherwise the address is left.
        if (CARRIES_CONNECTION) {
            leaves(allocations::stringsMade() - m_received.addresses);
        }
    }

private:
    using Arguments = std::tuple<All...>;
    static constexpr bool CARRIES_CONNECTION =
        (std::is_same_v<All, bt_device_connection_info_s*> || ...);

    void subscribe(IRequestBroker& broker) { (broker.*m_subscribe)(receive<All...>, &m_received); }
    void unsubscribe(IRequestBroker& broker) { (broker.*m_unsubscribe)(); }
    bool isSet() const { return fake_platform::callbacksSet() == 1; }

    void deliver() {
        [this]<std::size_t... Index>(std::index_sequence<Index...>) {
            fake_platform::deliver(m_setFunction, std::get<Index>(m_arguments)...);
        }
        (std::make_index_sequence<sizeof...(All) - 1>{});
    }

    static Arguments samples(SampleBuffers& buffers) {
        return [&buffers]<std::size_t... Index>(std::index_sequence<Index...>) {
            return Arguments{
                sample<std::tuple_element_t<Index, Arguments>>(buffers, static_cast<int>(Index))...,
                nullptr};
        }
        (std::make_index_sequence<sizeof...(All) - 1>{});
    }

    std::string m_setFunction;
    Subscribe m_subscribe;
    Unsubscribe m_unsubscribe;
    SampleBuffers m_buffers;
    Arguments m_arguments = samples(m_buffers);
    TaskInvokerImpl m_invoker;
    RequestBroker m_broker{&m_invoker};
    Received m_received;
    int m_subscriptions = 0;
};

struct Kind {
    const char* source;
    MakeScenario make;
};

std::ostream& operator<<(std::ostream& out, const Kind& kind) {
    return out << kind.source;
}

const std::array<Kind, 42> KINDS{{
#define EVENT(source, type, value, subscribe, unsubscribe, setFunction, unsetFunction, Callback, \
              types)                                                                             \
    {#source, [] {                                                                               \
         return std::make_unique<EventScenario<Callback>>(                                       \
             #setFunction, &IRequestBroker::subscribe, &IRequestBroker::unsubscribe);            \
     }},
#include "tests/support/EventTable.def"
#undef EVENT
}};

class EventAllocationTest : public testing::TestWithParam<Kind> {};

}  // namespace

TEST_P(EventAllocationTest, FailsForItsCallerAndLeavesNothingBehind) {
    const long strings =
        expectToSurvive("42 kinds of events", GetParam().make, 14 - PREPARED_ALLOCATIONS);
    // A string is left if one of the two allocations between a task's creation and its run fails,
    // for each of two subscriptions and each of two series.
    const bool isConnection = GetParam().source == std::string("BtDeviceConnectionStateChangedCb");
    EXPECT_EQ(strings, isConnection ? 2 * 2 * 2 : 0);
}

INSTANTIATE_TEST_SUITE_P(AllKinds, EventAllocationTest, testing::ValuesIn(KINDS),
                         [](const auto& kind) { return std::string(kind.param.source); });
