// The variants of an event: each field has odd values, and each can be delivered or sent.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "platform/host/events/EventArguments.h"
#include "platform/host/events/EventTable.h"
#include "platform/host/events/EventVariants.h"
#include "platform/host/events/ValueText.h"

namespace {

using namespace corvane::host;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::MatchesRegex;
using testing::StartsWith;

std::vector<std::string> differencesOf(const char* event) {
    std::vector<std::string> differences;
    for (const auto& variant : variantsOf(eventNamed(event))) {
        differences.push_back(variant.difference);
    }
    return differences;
}

void expectOddValues(const Event& event, std::span<const Field> fields,
                     const std::vector<std::string>& differences) {
    for (const auto& field : fields) {
        if (field.kind == Kind::Record) {
            expectOddValues(event, field.fields, differences);
        } else {
            EXPECT_THAT(differences, Contains(StartsWith(std::string(field.name) + '=')))
                << event.name;
        }
    }
}

TEST(EventVariantsTest, EachArgumentAndRecordFieldHasAnOddValue) {
    for (const auto& event : allEvents()) {
        expectOddValues(event, event.arguments, differencesOf(event.name));
    }
}

TEST(EventVariantsTest, BeginWithTheDefaultsAndDontRepeat) {
    for (const auto& event : allEvents()) {
        const auto differences = differencesOf(event.name);
        EXPECT_EQ(differences.front(), "");
        EXPECT_EQ(std::set(differences.begin(), differences.end()).size(), differences.size())
            << event.name;
    }
}

TEST(EventVariantsTest, HoldTheEndsOfNumbersAndAnUnknownEnumerator) {
    EXPECT_THAT(differencesOf("bt-audio-state-changed"),
                IsSupersetOf({"state=stopped", "state=suspended", "state=3",
                              "address=", "address=11:22:33:44:55:66"}));
    EXPECT_THAT(differencesOf("bt-gatt-connection-state-changed"),
                IsSupersetOf({"result=-2147483648", "result=-1", "result=1", "result=2147483647",
                              "connected=false"}));
    EXPECT_THAT(differencesOf("bt-avrcp-volume-changed"), IsSupersetOf({"volume=0", "volume=127"}));
    EXPECT_THAT(differencesOf("bt-avrcp-key-event-received"), IsSupersetOf({"key=0", "key=255"}));
}

TEST(EventVariantsTest, HoldLongTextsAndTextsThatAreNotUtf8) {
    EXPECT_THAT(differencesOf("bt-adapter-name-changed"),
                IsSupersetOf({std::string("name="), "name=" + std::string(248, 'n'),
                              std::string(R"(name=\xc3\xff)")}));
    const auto& event = eventNamed("bt-adapter-name-changed");
    EXPECT_EQ(variantsOf(event).back().values.get<std::string>("name"), "\xC3\xFF");
}

TEST(EventVariantsTest, HoldCountsThatDontMatchTheirArray) {
    EXPECT_THAT(differencesOf("bt-device-bond-created"),
                IsSupersetOf({"present=false", "service_uuid=", "service_count=0",
                              "service_count=-1", "service_uuid= service_count=3",
                              "manufacturer_data=", "manufacturer_data=00"}));
}

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

// `corvane emit` can't send a text that is not UTF-8 or an unknown value of an enumeration.
TEST(EventVariantsTest, CanBeSentByTheirDifferenceButForTwoKinds) {
    for (const auto& event : allEvents()) {
        for (const auto& variant : variantsOf(event)) {
            if (variant.difference.ends_with(R"(\xc3\xff)")) {
                continue;
            }
            try {
                EXPECT_TRUE(parseArguments(event, wordsOf(variant.difference)) == variant.values)
                    << event.name << ' ' << variant.difference;
            } catch (const InvalidValue& error) {
                EXPECT_THAT(error.what(), HasSubstr(" (1)")) << "no enumeration";
                EXPECT_THAT(variant.difference, MatchesRegex("[a-z_]+=[0-9]+"));
            }
        }
    }
}

}  // namespace
