// Tests the slot that keeps the one callback of an event.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/host/slots/CallbackSlot.h"
#include "tests/support/Gate.h"

namespace {

using corvane::host::CallbackSlot;
using corvane::host::setSlotObserver;
using corvane::host::SlotChange;
using Callback = void (*)(int, void*);
using Slot = CallbackSlot<Callback>;

void store(int value, void* userData) {
    *static_cast<int*>(userData) = value;
}

void storeNegative(int value, void* userData) {
    *static_cast<int*>(userData) = -value;
}

TEST(CallbackSlotTest, DeliversToTheCallbackSetLast) {
    Slot slot;
    int first = 0;
    int second = 0;
    EXPECT_EQ(slot.set(store, &first), 0);
    EXPECT_EQ(slot.set(storeNegative, &second), 0);
    EXPECT_EQ(slot.deliver(7), 1u);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, -7);
}

TEST(CallbackSlotTest, DeliversToNobodyWhenCleared) {
    Slot slot;
    int value = 0;
    EXPECT_EQ(slot.deliver(7), 0u);
    slot.set(store, &value);
    EXPECT_EQ(slot.unset(), 0);
    EXPECT_EQ(slot.unset(), 0);
    EXPECT_EQ(slot.deliver(7), 0u);
    EXPECT_EQ(value, 0);
}

struct Held {
    Gate entered;
    Gate release;
    std::atomic<bool> left = false;

    static void callback(int, void* self) {
        auto& held = *static_cast<Held*>(self);
        held.entered.open();
        held.release.wait();
        held.left = true;
    }
};

TEST(CallbackSlotTest, IsClearedWhenTheCallbackHasLeftOnOtherThreads) {
    Slot slot;
    Held held;
    slot.set(&Held::callback, &held);
    std::thread other([&slot] { slot.deliver(7); });
    held.entered.wait();
    held.release.open();
    slot.unset();
    EXPECT_TRUE(held.left);
    other.join();
}

TEST(CallbackSlotTest, IsClearedAllTheSameWhenTheCallbackStays) {
    Slot slot;
    Held held;
    slot.set(&Held::callback, &held);
    std::thread other([&slot] { slot.deliver(7); });
    held.entered.wait();
    slot.unset();
    EXPECT_FALSE(held.left);
    EXPECT_EQ(slot.deliver(7), 0u);
    held.release.open();
    other.join();
}

TEST(CallbackSlotTest, RefusesANullCallbackAndKeepsTheOneItHas) {
    Slot slot;
    int value = 0;
    slot.set(store, &value);
    EXPECT_LT(slot.set(nullptr, nullptr), 0);
    EXPECT_EQ(slot.deliver(7), 1u);
    EXPECT_EQ(value, 7);
}

TEST(CallbackSlotTest, CanBeClearedInsideTheCallback) {
    Slot slot;
    slot.set([](int, void* userData) { static_cast<Slot*>(userData)->unset(); }, &slot);
    EXPECT_EQ(slot.deliver(7), 1u);
    EXPECT_EQ(slot.deliver(7), 0u);
}

TEST(CallbackSlotTest, LetsAnExceptionOfTheCallbackThrough) {
    Slot slot;
    slot.set([](int, void*) { throw std::runtime_error("thrown"); }, nullptr);
    EXPECT_THROW(slot.deliver(7), std::runtime_error);
    EXPECT_THROW(slot.deliver(7), std::runtime_error);
}

struct Told {
    std::vector<std::string> changes;

    static void note(void* self, SlotChange change, const char* event, unsigned called) {
        const char* const word = change == SlotChange::Set     ? "set "
                                 : change == SlotChange::Unset ? "unset "
                                                               : "delivered ";
        static_cast<Told*>(self)->changes.push_back(word + std::string(event) + ' ' +
                                                    std::to_string(called));
    }
};

TEST(CallbackSlotTest, TellsTheObserverWhatHappens) {
    Slot slot("event");
    int value = 0;
    Told told;
    setSlotObserver(&Told::note, &told);
    slot.set(nullptr, nullptr);
    slot.deliver(7);
    slot.set(store, &value);
    slot.deliver(7);
    slot.unset();
    setSlotObserver(nullptr, nullptr);
    slot.set(store, &value);
    EXPECT_THAT(told.changes, testing::ElementsAre("delivered event 0", "set event 0",
                                                   "delivered event 1", "unset event 0"));
}

TEST(CallbackSlotTest, KnowsWhetherItIsSet) {
    Slot slot;
    int value = 0;
    EXPECT_FALSE(slot.isSet());
    slot.set(store, &value);
    EXPECT_TRUE(slot.isSet());
    slot.unset();
    EXPECT_FALSE(slot.isSet());
}

// The C functions are in the platform libraries, the slots in the core library.
TEST(CallbackSlotTest, IsTheSameInAllLibraries) {
    const auto& slot = corvane::host::slotOf<&bt_avrcp_set_volume_changed_cb>;
    EXPECT_EQ(bt_avrcp_set_volume_changed_cb([](unsigned short, void*) {}, nullptr), 0);
    EXPECT_TRUE(slot.isSet());
    EXPECT_EQ(slot.deliver(static_cast<unsigned short>(7)), 1u);
    EXPECT_EQ(bt_avrcp_unset_volume_changed_cb(), 0);
    EXPECT_FALSE(slot.isSet());
}

// A plugin may unsubscribe in its callback. unset() must recognise the call that is running,
// although the delivery and the C function are in different libraries.
TEST(CallbackSlotTest, IsClearedWithoutAWaitInsideTheCallback) {
    using std::chrono::steady_clock;
    static steady_clock::duration needed;
    bt_avrcp_set_volume_changed_cb(
        [](unsigned short, void*) {
            const auto start = steady_clock::now();
            bt_avrcp_unset_volume_changed_cb();
            needed = steady_clock::now() - start;
        },
        nullptr);
    EXPECT_EQ(corvane::host::slotOf<&bt_avrcp_set_volume_changed_cb>.deliver(
                  static_cast<unsigned short>(7)),
              1u);
    EXPECT_LT(needed, std::chrono::milliseconds(100));
}

// While other threads change the slot, a delivery must use a callback and user data that were set
// together.
TEST(CallbackSlotTest, NeverMixesCallbackAndUserDataOfTwoSettings) {
    static std::atomic<int> mixed{0};
    static int one;
    static int two;
    const Callback forOne = [](int, void* userData) { mixed += userData != &one; };
    const Callback forTwo = [](int, void* userData) { mixed += userData != &two; };
    Slot slot;
    std::atomic<bool> stop{false};
    std::thread delivering([&] {
        while (!stop) {
            slot.deliver(7);
        }
    });
    for (int i = 0; i < 20000; ++i) {
        slot.set(forOne, &one);
        slot.set(forTwo, &two);
        slot.unset();
    }
    stop = true;
    delivering.join();
    EXPECT_EQ(mixed, 0);
}

}  // namespace
