// Events of every kind from four threads while two others subscribe and unsubscribe.
#include <bluetooth.h>
#include <gtest/gtest.h>
#include <sound_manager_tv.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include "Events.h"
#include "FakePlatform.h"
#include "RequestBroker.h"
#include "UnlimitedTaskInvoker.h"

namespace {

constexpr int DELIVERING_THREADS = 4;
constexpr int SUBSCRIBING_THREADS = 2;
constexpr int EVENTS_PER_THREAD = 50'000;

/// Plain numbers on purpose: a context that runs two tasks at once is a data race.
class CountingReceiver : public Receiver {
public:
    void receive(const std::string&) override { ++count; }
    long count = 0;
};

/// Checks that each thread's events arrive in the order it sent them.
struct OrderReceiver {
    std::array<int, DELIVERING_THREADS> next{};
    int outOfOrder = 0;

    static void receive(sound_tv_output_route_e thread, int number, void* userData) {
        auto* self = static_cast<OrderReceiver*>(userData);
        int& next = self->next[static_cast<std::size_t>(thread)];
        self->outOfOrder += number != next;
        next = number + 1;
    }
};

/// A plugin with its broker; subscribed to nothing yet.
struct Plugin {
    Plugin() = default;
    // What waits for the next job would be lost with the context.
    ~Plugin() { invoker.runTheRest(); }
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    CountingReceiver receiver;
    UnlimitedTaskInvoker invoker;
    RequestBroker broker{&invoker};
};

void subscribeAll(Plugin& plugin) {
    for (const auto& event : allEvents()) {
        event->subscribe(plugin.broker, plugin.receiver);
    }
}

void unsubscribeAll(Plugin& plugin) {
    for (const auto& event : allEvents()) {
        event->unsubscribe(plugin.broker);
    }
}

/// Runs `deliver(thread, number)` EVENTS_PER_THREAD times on each delivering thread, and
/// `change(plugin)` on the others, each with a plugin of its own, until all is delivered.
/// Those plugins outlive the storm: a fan-out may still hold one that has unsubscribed.
template <typename Deliver, typename Change>
void storm(Deliver deliver, Change change) {
    std::array<Plugin, SUBSCRIBING_THREADS> passing;
    std::atomic<int> delivering = DELIVERING_THREADS;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < DELIVERING_THREADS; ++thread) {
        threads.emplace_back([&, thread] {
            for (int number = 0; number < EVENTS_PER_THREAD; ++number) {
                deliver(thread, number);
            }
            --delivering;
        });
    }
    for (Plugin& plugin : passing) {
        threads.emplace_back([&] {
            while (delivering > 0) {
                change(plugin);
            }
        });
    }
}

class EventStormTest : public testing::Test {
protected:
    EventStormTest() {
        fake_platform::reset();
        fake_platform::recordNothing();
    }
    ~EventStormTest() override { fake_platform::reset(); }
};

}  // namespace

TEST_F(EventStormTest, APluginThatStaysGetsEveryEventOfEveryKind) {
    Plugin staying;
    subscribeAll(staying);
    const auto& events = allEvents();
    storm(
        [&](int thread, int number) {
            const auto index = static_cast<std::size_t>(thread + number) % events.size();
            events[index]->deliver();
        },
        [](Plugin& passing) {
            subscribeAll(passing);
            unsubscribeAll(passing);
        });
    staying.invoker.runTheRest();
    EXPECT_EQ(staying.receiver.count, long{DELIVERING_THREADS} * EVENTS_PER_THREAD);
    unsubscribeAll(staying);
    EXPECT_EQ(fake_platform::callbacksSet(), 0);
}

TEST_F(EventStormTest, EachThreadsEventsArriveInOrder) {
    Plugin staying;
    OrderReceiver order;
    staying.broker.SoundManagerSetMultiviewSpeakerChangedCb(OrderReceiver::receive, &order);
    storm(
        [](int thread, int number) {
            fake_platform::deliver("sound_manager_set_multiview_speaker_selection_changed_cb",
                                   static_cast<sound_tv_output_route_e>(thread), number);
        },
        [](Plugin& passing) {
            const Event& event = eventOf(SOUND_MANAGER_MULTIVIEW_SPEAKER_CHANGED);
            event.subscribe(passing.broker, passing.receiver);
            event.unsubscribe(passing.broker);
        });
    staying.invoker.runTheRest();
    EXPECT_EQ(order.outOfOrder, 0);
    for (const int next : order.next) {
        EXPECT_EQ(next, EVENTS_PER_THREAD);
    }
    staying.broker.SoundManagerUnsetMultiviewSpeakerChangedCb();
}

TEST_F(EventStormTest, SourcesMayComeAndGoBetweenTheEvents) {
    fake_platform::serialiseDeliveries();
    storm(
        [](int, int number) {
            fake_platform::deliver("bt_adapter_set_state_changed_cb", number, BT_ADAPTER_STATE_ON);
        },
        [](Plugin& passing) {
            const Event& event = eventOf(BT_ADAPTER_STATE_CHANGED);
            event.subscribe(passing.broker, passing.receiver);
            event.unsubscribe(passing.broker);
        });
    EXPECT_EQ(fake_platform::callbacksSet(), 0);
    const auto slot = fake_platform::slot("bt_adapter_set_state_changed_cb");
    EXPECT_EQ(slot.sets, slot.unsets);
}
