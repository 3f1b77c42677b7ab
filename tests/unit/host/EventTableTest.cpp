// The table of what can be injected.
#include "EventTable.h"

#include "ListCommand.h"
#include "ValueText.h"
#include "Values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using namespace corvane::host;
using testing::HasSubstr;

// Calls `visit` with each argument and each field of each record.
template <typename Visit>
void forEachField(std::span<const Field> fields, Visit visit) {
    for (const auto& field : fields) {
        visit(field);
        forEachField(field.fields, visit);
    }
}

TEST(EventTableTest, HasTheEventsOfAdapterAndDevices) {
    EXPECT_EQ(allEvents().size(), 11u);
    EXPECT_NE(findEvent("bt-adapter-ssp-conecnt-request"), nullptr);
    EXPECT_EQ(findEvent("bt-adapter"), nullptr);
}

TEST(EventTableTest, NamesEventsAndFieldsOnceOnly) {
    std::set<std::string> events;
    for (const auto& event : allEvents()) {
        EXPECT_TRUE(events.insert(event.name).second) << event.name;
        std::set<std::string> fields;
        forEachField(event.arguments, [&](const Field& field) {
            EXPECT_TRUE(fields.insert(field.name).second) << event.name << ' ' << field.name;
            EXPECT_EQ(findField(event, field.name)->name, std::string(field.name));
        });
    }
}

TEST(EventTableTest, HasAllowedNamesWithEnumerationsOnlyAndFieldsWithRecordsOnly) {
    for (const auto& event : allEvents()) {
        forEachField(event.arguments, [](const Field& field) {
            EXPECT_EQ(field.kind == Kind::Enumeration, !field.allowed.empty()) << field.name;
            EXPECT_EQ(field.kind == Kind::Record, !field.fields.empty()) << field.name;
        });
    }
}

TEST(EventTableTest, HasADefaultThatIsAllowedForEverything) {
    for (const auto& event : allEvents()) {
        EXPECT_NO_THROW(Values{event}) << event.name;
    }
}

TEST(EventTableTest, MakesMethodNamesOfEventNames) {
    EXPECT_EQ(methodName(*findEvent("bt-adapter-state-changed")), "BtAdapterStateChanged");
}

TEST(ListCommandTest, ShowsEveryEventAndField) {
    const auto text = corvane::tool::listText();
    for (const auto& event : allEvents()) {
        EXPECT_THAT(text, HasSubstr('\n' + std::string(event.name) + ": " + event.meaning));
        forEachField(event.arguments,
                     [&](const Field& field) { EXPECT_THAT(text, HasSubstr(field.name)); });
    }
    EXPECT_THAT(text, HasSubstr("pin-request|pin-display|passkey-request"));
}

}  // namespace
