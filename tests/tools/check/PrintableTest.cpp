// Tests which characters of untrusted text are escaped before it is printed to a terminal.
#include <gtest/gtest.h>

#include <string>

#include "tools/corvane/common/Printable.h"

namespace {

using corvane::tool::printable;

TEST(PrintableTest, LettersOfAllScriptsStayAsTheyAre) {
    const std::string text = "a~ \u00e9 \u0436 \u6f22 \U0001f600";
    EXPECT_EQ(printable(text), text);
    EXPECT_EQ(printable(""), "");
}

TEST(PrintableTest, ControlCharactersAreEscapedByteByByte) {
    EXPECT_EQ(printable(std::string("\0\033[m\177", 5)), "\\x00\\x1b[m\\x7f");
    EXPECT_EQ(printable("\u009b"), "\\xc2\\x9b");
    EXPECT_EQ(printable("\u202e\u2066"), "\\xe2\\x80\\xae\\xe2\\x81\\xa6");
}

TEST(PrintableTest, WhatIsNotWellFormedIsEscaped) {
    EXPECT_EQ(printable("\x9b\xff"), "\\x9b\\xff");
    EXPECT_EQ(printable("\xe2\x82"), "\\xe2\\x82");
    EXPECT_EQ(printable("\xe2x"), "\\xe2x");
    EXPECT_EQ(printable("\xc0\x9b"), "\\xc0\\x9b");
    EXPECT_EQ(printable("\xe0\x82\x9b"), "\\xe0\\x82\\x9b");
    EXPECT_EQ(printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");
    EXPECT_EQ(printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
}

TEST(PrintableTest, KeepsWhatItIsToldTo) {
    EXPECT_EQ(printable("a\tb\nc\r", "\n\t"), "a\tb\nc\\x0d");
}

}  // namespace
