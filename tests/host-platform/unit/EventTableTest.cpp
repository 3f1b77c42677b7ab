// Compares the host platform's event table with the table of the daemon and with that of the
// tests. Also tests the output of `corvane list`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <typeindex>
#include <utility>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/EventTypes.h"
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

// An event of a table: its name, its set and unset functions and the type of its callback.
using Row = std::tuple<std::string, std::string, std::string, std::type_index>;

std::string eventName(std::string_view type) {
    std::string name;
    for (const char letter : type) {
        name += letter == '_' ? '-' : static_cast<char>(std::tolower(letter));
    }
    return name;
}

std::vector<Row> rowsOfHostPlatform() {
    std::vector<Row> rows;
    const std::type_index types[] = {
#define EVENT(library, name, setFunction, ...) typeid(CallbackOf<&setFunction>),
#include "platform/host/events/Events.def"
#undef EVENT
    };
    for (std::size_t i = 0; i < allEvents().size(); ++i) {
        const auto& event = allEvents()[i];
        rows.emplace_back(event.name, event.callback, event.unset, types[i]);
    }
    return rows;
}

std::vector<Row> rowsOfTests() {
    return {
#define EVENT(source, type, value, subscribe, unsubscribe, setFunction, unsetFunction, callback, \
              arguments)                                                                         \
    Row(eventName(#type), #setFunction, #unsetFunction, typeid(callback)),
#include "tests/support/EventTable.def"
#undef EVENT
    };
}

// The daemon's table has the type of the callback, but not the set and unset functions.
using BrokerRow = std::pair<std::string, std::type_index>;

std::vector<BrokerRow> rowsOfBroker() {
    return {
#define BROKER_OPERATION(subscribe, unsubscribe, callback, type, source) \
    BrokerRow(eventName(#type), typeid(callback)),
#include "daemon/src/broker/BrokerOperations.def"
#undef BROKER_OPERATION
    };
}

TEST(EventTableTest, AgreesWithTheTableOfTheTests) {
    EXPECT_EQ(rowsOfHostPlatform(), rowsOfTests());
    EXPECT_EQ(allEvents().size(), 42u);
}

TEST(EventTableTest, AgreesWithTheOperationsOfTheBroker) {
    std::vector<BrokerRow> rows;
    for (const auto& [name, set, unset, callback] : rowsOfHostPlatform()) {
        rows.emplace_back(name, callback);
    }
    EXPECT_THAT(rows, testing::UnorderedElementsAreArray(rowsOfBroker()));
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
