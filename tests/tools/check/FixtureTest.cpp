// Plugins that are wrong in one way: that is found, and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/tools/check/RunTool.h"
#include "tools/corvane/check/Findings.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Row {
    std::string fixture;
    std::string finding;           // the only one; or empty
    std::string slowMs = "10000";  // a busy machine is no mistake of the plugin
    std::string timeoutSec = "60";

    friend std::ostream& operator<<(std::ostream& out, const Row& row) {
        return out << row.fixture;
    }
};

const std::vector<Row> rows{
    {"Clean", ""},
    {"UsesWholeQueue", ""},
    {"GainsNoRights", ""},
    {"NoInit", "no-init"},
    {"NoDeinit", "no-deinit"},
    {"MissingFunction", "unresolved-symbols"},
    {"MissingVariable", "not-loadable"},
    {"NewerInterface", "newer-interface"},
    {"ExportsMore", "exported-symbols"},
#ifndef __clang__  // makes no such symbols
    {"UniqueSymbols", "unique-symbols"},
#endif
    {"Nodelete", "nodelete"},
    {"InitFails", "init-failed"},
    {"InitThrows", "init-exception"},
    {"ThrowsLongText", "init-exception"},
    {"NullCallback", "null-callback"},
    {"SubscribesTwice", "subscribed-twice"},
    {"CallbackThrows", "callback-exception"},
    {"SlowCallback", "slow-callback", "100"},
    {"SlowJob", "slow-job", "100"},
    {"FillsQueue", "queue-full"},
    {"FillsQueueWhenDestroyed", "queue-full"},
    {"UnsubscribesOther", "not-subscribed"},
    {"DeinitThrows", "deinit-exception"},
    {"LeavesSubscription", "leftover-subscriptions"},
    {"LeavesProfile", "leftover-profiles"},
    {"LeavesThread", "leftover-threads"},
    {"StaysLoaded", "stays-loaded"},
    {"ThreadThrows", "uncaught-exception"},
    {"Crashes", "crash"},
    {"CrashesOffMainThread", "crash"},
    {"NeedsRecord", "crash"},
    {"OverflowsStack", "crash"},
    {"Hangs", "hang", "10000", "3"},
    {"RequestsWhenDestroyed", "dropped-task-hang", "10000", "5"},
    {"Exits", "process-ended"},
    {"FloodsOutput", "crash"},
    {"TakesMemory", SANITIZER[0] == '\0' ? "init-exception" : ""},
    {"ReadsFreed", SANITIZER[0] == '\0' ? "" : "sanitizer-report"},
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

INSTANTIATE_TEST_SUITE_P(All, FixtureTest, testing::ValuesIn(rows),
                         [](const auto& tested) { return tested.param.fixture; });

TEST(FindingsTest, EachHasAFixture) {
    for (const auto& kind : corvane::check::allFindingKinds()) {
        const std::string_view id = kind.id;
        // The first is of a file's name; see CheckTest.
        const auto isOf = [&](const Row& row) { return row.finding == id; };
        EXPECT_TRUE(id == "not-a-candidate" || id == "sanitizer-report" ||
                    std::ranges::any_of(rows, isOf))
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
