#include "tests/support/process/Transcript.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>

#include "tests/support/SizeType.h"

void expectTranscript(const std::string& directory, const std::string& name,
                      const std::string& seen) {
    static const std::regex ownSize(std::string("size_t = ") + SIZE_TYPE);
    const auto text = std::regex_replace(seen, ownSize, "size_t = long unsigned int");
    const auto path = directory + '/' + name + ".txt";
    if (std::getenv("CORVANE_UPDATE_TRANSCRIPTS") != nullptr) {
        std::ofstream file(path);
        EXPECT_TRUE(file << text << std::flush) << path;
        return;
    }
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    std::ostringstream expected;
    expected << file.rdbuf();
    EXPECT_EQ(text, expected.str())
        << path << "\nIf the change is wanted: script/test --update-transcripts";
}
