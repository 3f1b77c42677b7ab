// Tests that the page about the findings explains all of them, and no others.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "tools/corvane/check/findings/Findings.h"

namespace {

// Returns the ids of all rows such as "| `id` | error | ...".
std::vector<std::string> idsOfThePage() {
    std::ifstream page(PAGE);
    std::vector<std::string> ids;
    for (std::string line; std::getline(page, line);) {
        const auto end = std::min(line.find("` | error |"), line.find("` | warning |"));
        if (line.starts_with("| `") && end != std::string::npos) {
            ids.push_back(line.substr(3, end - 3));
        }
    }
    return ids;
}

TEST(CheckPageTest, ExplainsEveryFindingInTheirOrder) {
    std::vector<std::string> ids;
    for (const auto& kind : corvane::check::allFindingKinds()) {
        ids.emplace_back(kind.id);
    }
    EXPECT_THAT(idsOfThePage(), testing::ElementsAreArray(ids));
}

}  // namespace
