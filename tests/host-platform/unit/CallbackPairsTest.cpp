// Tests all 42 pairs of C functions that set and unset a callback, in the platform libraries.
#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <gtest/gtest.h>
#include <sound_manager_tv.h>

#include <string>
#include <vector>

namespace {

struct Pair {
    const char* name;
    int (*setToNull)();
    int (*set)();
    int (*unset)();
};

template <typename... All>
void ignore(All...) {}

template <typename... All>
constexpr auto ignoring(void (*)(All...)) {
    return &ignore<All...>;
}

const std::vector<Pair>& pairs() {
    static const std::vector<Pair> all = {
#define EVENT(source, type, value, subscribe, unsubscribe, setFunction, unsetFunction, callback, \
              arguments)                                                                         \
    Pair{#setFunction, [] { return setFunction(nullptr, nullptr); },                             \
         [] { return setFunction(ignoring(callback{}), nullptr); }, &unsetFunction},
#include "tests/support/EventTable.def"
#undef EVENT
    };
    return all;
}

class CallbackPairsTest : public testing::TestWithParam<Pair> {};

TEST_P(CallbackPairsTest, SetsAndClears) {
    const auto& pair = GetParam();
    EXPECT_LT(pair.setToNull(), 0);
    EXPECT_EQ(pair.set(), 0);
    EXPECT_EQ(pair.set(), 0);
    EXPECT_EQ(pair.unset(), 0);
    EXPECT_EQ(pair.unset(), 0);
}

INSTANTIATE_TEST_SUITE_P(All, CallbackPairsTest, testing::ValuesIn(pairs()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(CallbackPairsTableTest, HasEveryKindOfEvent) {
    EXPECT_EQ(pairs().size(), 42u);
}

TEST(AudioStackTest, NeedsNoSetUp) {
    EXPECT_EQ(bt_audio_initialize(), 0);
    EXPECT_EQ(bt_audio_deinitialize(), 0);
}

}  // namespace
