// The one callback kept for each kind of event.
#include "CallbackSlot.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace {

using corvane::host::CallbackSlot;
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

// Callback and user data belong together, whatever another thread does to the slot.
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
