// Tests the parser of scenarios.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tools/corvane/play/Scenario.h"

namespace {

using namespace corvane::tool;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::vector<Step> parse(const std::string& text) {
    std::istringstream input(text);
    return parseScenario(input, "file");
}

std::string complaint(const std::string& text) {
    try {
        parse(text);
        return "";
    } catch (const ScenarioError& error) {
        return error.what();
    }
}

TEST(ScenarioWordsTest, AreSeparatedByBlanksOutsideQuotes) {
    EXPECT_THAT(splitWords("  a\tb=c  "), ElementsAre("a", "b=c"));
    EXPECT_THAT(splitWords(R"(name="a b"c "" "\"\\\n")"), ElementsAre("name=a bc", "", R"("\\n)"));
    EXPECT_THAT(splitWords("a#b #c d"), ElementsAre("a#b"));
    EXPECT_THAT(splitWords("# only this"), ElementsAre());
    EXPECT_THAT(splitWords("end\r"), ElementsAre("end"));
    EXPECT_THROW(splitWords("name=\"a"), std::runtime_error);
}

TEST(ScenarioTest, ReadsStepsWithTheirLines) {
    const auto steps = parse("\n# comment\nemit bt-adapter-name-changed name=\"a b\"\nwait 20\n");
    ASSERT_EQ(steps.size(), 2u);
    EXPECT_EQ(steps[0].line, 3);
    const auto& emit = std::get<EmitStep>(steps[0].action);
    EXPECT_STREQ(emit.event->name, "bt-adapter-name-changed");
    EXPECT_EQ(emit.values.get<std::string>("name"), "a b");
    EXPECT_EQ(std::get<WaitStep>(steps[1].action).time, milliseconds(20));
}

TEST(ScenarioTest, RefusesALineWithAZeroByteWhichNoMessageCarries) {
    EXPECT_EQ(complaint(std::string("wait 1\nemit bt-adapter-name-changed name=a\0b", 44)),
              "file:2: this line contains a zero byte");
}

TEST(ScenarioTest, ReadsRepeatsInOneAnother) {
    const auto steps = parse("repeat 2\nwait 1\nrepeat 3\nwait 2\nend\nend\nwait 3\n");
    ASSERT_EQ(steps.size(), 2u);
    const auto& outer = std::get<RepeatStep>(steps[0].action);
    EXPECT_EQ(outer.times, 2);
    ASSERT_EQ(outer.steps.size(), 2u);
    const auto& inner = std::get<RepeatStep>(outer.steps[1].action);
    EXPECT_EQ(inner.times, 3);
    EXPECT_EQ(inner.steps.size(), 1u);
}

TEST(ScenarioTest, ReadsExpectations) {
    const auto steps = parse(
        "expect bt-avrcp-volume-notify delivered 3\n"
        "expect bt-avrcp-volume-notify set within 50\n"
        "expect bt-avrcp-volume-notify unset\n");
    const auto& delivered = std::get<ExpectStep>(steps.at(0).action);
    EXPECT_EQ(delivered.state, ExpectStep::State::Delivered);
    EXPECT_EQ(delivered.count, 3u);
    EXPECT_FALSE(delivered.within);
    const auto& set = std::get<ExpectStep>(steps.at(1).action);
    EXPECT_EQ(set.state, ExpectStep::State::Set);
    EXPECT_EQ(set.within, milliseconds(50));
    EXPECT_EQ(std::get<ExpectStep>(steps.at(2).action).state, ExpectStep::State::Unset);
}

TEST(ScenarioTest, NamesTheLineAndWhatIsAllowed) {
    EXPECT_EQ(complaint("\njump 3\n"),
              "file:2: there is no step \"jump\"; the steps are emit, wait, expect, repeat and "
              "end");
    EXPECT_EQ(complaint("wait long\n"),
              "file:1: a time in milliseconds can't be \"long\"; it must be a number from 0 to "
              "86400000");
    EXPECT_EQ(complaint("wait\n"), "file:1: wait must have the form wait MS");
    EXPECT_EQ(complaint("repeat 0\nend\n"),
              "file:1: the count of repeat can't be \"0\"; it must be a number from 1 to 1000000");
    EXPECT_EQ(complaint("emit bt-adapter-state-changed state=blue\n"),
              "file:1: state can't be \"blue\"; it must be off (0) or on (1)");
    EXPECT_THAT(complaint("emit bt-nothing\n"), HasSubstr("the nearest names are"));
    EXPECT_THAT(complaint("emit\n"), StartsWith("file:1: emit needs an event"));
    EXPECT_EQ(complaint("emit x=\"\n"),
              "file:1: a quote isn't closed; a quote inside quotes is written \\\"");
}

TEST(ScenarioTest, RefusesExpectationsOfAnotherForm) {
    const std::string form = "expect EVENT delivered COUNT [within MS]";
    for (const auto* bad : {"", " delivered", " delivered 1 2", " set 1", " gone", " set within"}) {
        EXPECT_THAT(complaint(std::string("expect bt-avrcp-volume-notify") + bad), HasSubstr(form))
            << bad;
    }
    EXPECT_THAT(complaint("expect bt-avrcp-volume-notify delivered -1"),
                HasSubstr("a count can't be \"-1\""));
}

TEST(ScenarioTest, WantsAnEndForEachRepeat) {
    EXPECT_EQ(complaint("wait 1\nrepeat 2\nwait 1\n"), "file:2: this repeat has no end");
    EXPECT_EQ(complaint("end\n"), "file:1: this end has no repeat");
    EXPECT_EQ(complaint("repeat 2\nend it\n"), "file:2: end takes no arguments");
}

TEST(ScenarioTest, LimitsRepeatsInOneAnother) {
    std::string text;
    for (int i = 0; i < 16; ++i) {
        text = "repeat 1\n" + text + "end\n";
    }
    EXPECT_EQ(complaint(text), "");
    EXPECT_EQ(complaint("repeat 1\n" + text + "end\n"),
              "file:17: repeats can be nested at most 16 deep");
}

}  // namespace
