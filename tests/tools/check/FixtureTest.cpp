// Tests that `corvane check` finds the one error of each fixture plugin, and no other.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/tools/check/RunTool.h"
#include "tools/corvane/check/findings/Findings.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Row {
    std::string fixture;
    std::string finding;           // the only one; empty: none
    std::string slowMs = "10000";  // long enough for a busy machine
    std::string timeoutSec = "60";

    friend std::ostream& operator<<(std::ostream& out, const Row& row) {
        return out << row.fixture;
    }
};

const std::vector<Row> ROWS{
    {"clean", ""},
    {"uses_whole_queue", ""},
    {"gains_no_rights", ""},
    {"no_init", "no-init"},
    {"no_deinit", "no-deinit"},
    {"missing_function_in_callback", "unresolved-symbols"},
    {"missing_variable", "not-loadable"},
    {"newer_interface", "newer-interface"},
    {"exports_more", "exported-symbols"},
#ifndef __clang__  // clang emits no such symbols
    {"unique_symbols", "unique-symbols"},
#endif
    {"nodelete", "nodelete"},
    {"init_returns_minus_3", "init-failed"},
    {"init_throws_runtime_error", "init-exception"},
    {"throws_long_text", "init-exception"},
    {"null_callback", "null-callback"},
    {"subscribes_twice", "subscribed-twice"},
    {"callback_throws", "callback-exception"},
    {"slow_callback", "slow-callback", "100"},
    {"slow_job", "slow-job", "100"},
    {"overfills_queue", "queue-full"},
    {"fills_queue_when_destroyed", "queue-full"},
    {"unsubscribes_other", "not-subscribed"},
    {"deinit_throws_int", "deinit-exception"},
    {"leaves_subscription", "leftover-subscriptions"},
    {"leaves_profile", "leftover-profiles"},
    {"leaves_thread", "leftover-threads"},
    {"stays_loaded", "stays-loaded"},
    {"thread_throws", "uncaught-exception"},
    {"crashes", "crash"},
    {"crashes_off_main_thread", "crash"},
    {"needs_record", "crash"},
    {"needs_services", "crash"},
    {"overflows_stack", "crash"},
    {"hangs", "hang", "10000", "3"},
    {"requests_when_destroyed", "dropped-task-hang", "10000", "5"},
    {"exits_at_once_in_callback", "process-ended"},
    {"floods_output", "crash"},
    {"takes_memory", SANITIZER[0] == '\0' ? "init-exception" : ""},
    {"reads_freed", SANITIZER[0] == '\0' ? "" : "sanitizer-report"},
};

std::vector<std::string> idsOf(const nlohmann::json& result) {
    std::vector<std::string> ids;
    for (const auto& finding : result.at("findings")) {
        ids.push_back(finding.at("id"));
    }
    return ids;
}

class FixtureTest : public testing::TestWithParam<Row> {};

TEST_P(FixtureTest, HasItsFindingAndNoOther) {
    const auto& row = GetParam();
    const auto result =
        check(fixture(row.fixture), {"--slow-ms", row.slowMs, "--timeout", row.timeoutSec});
    ASSERT_TRUE(result.contains("findings")) << result.dump(2);
    if (row.finding.empty()) {
        EXPECT_THAT(idsOf(result), IsEmpty()) << result.dump(2);
    } else {
        EXPECT_THAT(idsOf(result), ElementsAre(row.finding)) << result.dump(2);
    }
}

INSTANTIATE_TEST_SUITE_P(All, FixtureTest, testing::ValuesIn(ROWS),
                         [](const auto& tested) { return tested.param.fixture; });

TEST(FindingsTest, EachHasAFixture) {
    for (const auto& kind : corvane::check::allFindingKinds()) {
        const std::string_view id = kind.id;
        // not-a-candidate is about the file's name; CheckTest tests it.
        const auto isOf = [&](const Row& row) { return row.finding == id; };
        EXPECT_TRUE(id == "not-a-candidate" || id == "sanitizer-report" ||
                    std::ranges::any_of(ROWS, isOf))
            << id;
    }
}

TEST(FindingsTest, KeepsAThousandDetailsOfALimitedLength) {
    corvane::check::Findings findings;
    for (int i = 0; i < 1100; ++i) {
        findings.add("crash", std::to_string(i) + std::string(5000, 'x'));
    }
    const auto& details = findings.list().front().details;
    EXPECT_EQ(details.size(), 1000U);
    EXPECT_EQ(details.front(), '0' + std::string(3999, 'x'));
}

}  // namespace
