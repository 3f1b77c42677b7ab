// Tests the warning about set and unset calls that block a plugin's thread for too long.
#include <bluetooth.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include "platform/host/slots/Slot.h"

namespace {

using corvane::host::SlotChange;
using testing::HasSubstr;
using testing::IsEmpty;

// A slot observer that keeps the calling thread busy for longer than the default limit of 100 ms.
void work(void*, SlotChange, const char*, unsigned) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(110);
    while (std::chrono::steady_clock::now() < end) {
    }
}

void ignore(int, bt_adapter_state_e, void*) {}

std::string logOf(void (*calls)()) {
    testing::internal::CaptureStderr();
    calls();
    return testing::internal::GetCapturedStderr();
}

void setAndUnset() {
    bt_adapter_set_state_changed_cb(ignore, nullptr);
    bt_adapter_unset_state_changed_cb();
}

TEST(SlowCallTest, SetAndUnsetAreReportedWithTheirEventAndThread) {
    corvane::host::setSlotObserver(work, nullptr);
    const auto log = logOf(setAndUnset);
    corvane::host::setSlotObserver(nullptr, nullptr);
    const auto thread = std::to_string(gettid());
    EXPECT_THAT(log, HasSubstr("W SLOW: bt-adapter-state-changed: the set call kept thread " +
                               thread + " for "));
    EXPECT_THAT(log, HasSubstr("W SLOW: bt-adapter-state-changed: the unset call kept thread " +
                               thread + " for "));
}

TEST(SlowCallTest, OtherCallsAreNotReported) {
    EXPECT_THAT(logOf(setAndUnset), IsEmpty());
}

}  // namespace
