// The report about moved operations.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/abi/OperationTable.h"

using testing::EndsWith;

namespace {

const std::vector<std::string> WAS{"A()", "B(int)", "C()"};

}  // namespace

TEST(OperationTableTest, NothingIsReportedOfWhatIsNewAtTheEnd) {
    EXPECT_EQ(movedOperations(WAS, WAS), "");
    EXPECT_EQ(movedOperations(WAS, {"A()", "B(int)", "C()", "D()"}), "");
}

TEST(OperationTableTest, AMovedOperationIsNamedWithBothItsSlots) {
    EXPECT_EQ(movedOperations(WAS, {"B(int)", "A()", "C()"}),
              "slot 0 was A(), which is at 1; now B(int)\n"
              "slot 1 was B(int), which is at 0; now A()\n");
}

TEST(OperationTableTest, AChangedTypeIsShownWithTheOldOne) {
    EXPECT_EQ(movedOperations(WAS, {"A()", "B(long)", "C()"}), "slot 1 was B(int); now B(long)\n");
}

TEST(OperationTableTest, AnOperationThatIsGoneIsReportedAsSuch) {
    EXPECT_EQ(movedOperations(WAS, {"A()", "B(int)", "E()"}),
              "slot 2 was C(), which is gone; now E()\n");
    EXPECT_EQ(movedOperations(WAS, {"A()", "B(int)"}),
              "slot 2 was C(), which is gone; now beyond the end\n");
}

TEST(OperationTableTest, FromTheSixthOnTheMovedAreOnlyCounted) {
    EXPECT_THAT(movedOperations(std::vector<std::string>(8, "A()"), {}),
                EndsWith("slot 4 was A(), which is gone; now beyond the end\nand 3 more\n"));
}
