// The table of what can be injected.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/ValueText.h"
#include "platform/host/events/Values.h"
#include "tools/corvane/events/EventJson.h"
#include "tools/corvane/events/ListCommand.h"

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

// The names of the type and of the set function of every kind of event.
struct Kept {
    const char* type;
    const char* set;
};

constexpr Kept kept[] = {
#define EVENT(source, type, value, subscribe, unsubscribe, setFunction, ...) {#type, #setFunction},
#include "tests/support/EventTable.def"
#undef EVENT
};

std::string eventName(std::string_view type) {
    std::string name;
    for (const char letter : type) {
        name += letter == '_' ? '-' : static_cast<char>(std::tolower(letter));
    }
    return name;
}

TEST(EventTableTest, HasEveryKindOfEventInOrder) {
    ASSERT_EQ(allEvents().size(), std::size(kept));
    for (std::size_t i = 0; i < std::size(kept); ++i) {
        EXPECT_EQ(allEvents()[i].name, eventName(kept[i].type));
        EXPECT_STREQ(allEvents()[i].callback, kept[i].set);
    }
}

TEST(EventTableTest, FindsEventsByTheirWholeName) {
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

TEST(ListCommandTest, ShowsEveryEventAsJson) {
    const auto list = nlohmann::json::parse(corvane::tool::listJson());
    ASSERT_EQ(list.size(), allEvents().size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        EXPECT_EQ(list[i].at("name"), allEvents()[i].name);
        EXPECT_EQ(list[i].at("callback"), allEvents()[i].callback);
    }
}

TEST(ListCommandTest, ShowsArgumentsAndRecordFieldsAsJson) {
    const auto event = corvane::tool::eventJson(*findEvent("bt-socket-connection-state-changed"));
    EXPECT_EQ(event.at("arguments").size(), 7u);
    EXPECT_EQ(event.at("arguments")[1].dump(),
              R"({"name":"state","type":"enumeration","default":"connected",)"
              R"("values":["connected","disconnected"]})");
    EXPECT_EQ(event.at("arguments")[2].dump(),
              R"({"name":"socket_fd","record":"connection","type":"integer","default":"7",)"
              R"("values":[]})");
}

}  // namespace
