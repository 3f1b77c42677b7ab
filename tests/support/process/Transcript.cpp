#include "tests/support/process/Transcript.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

void expectTranscript(const std::string& directory, const std::string& name,
                      const std::string& seen) {
    const auto path = directory + '/' + name + ".txt";
    if (std::getenv("CORVANE_UPDATE_TRANSCRIPTS") != nullptr) {
        std::ofstream file(path);
        EXPECT_TRUE(file << seen << std::flush) << path;
        return;
    }
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    std::ostringstream expected;
    expected << file.rdbuf();
    EXPECT_EQ(seen, expected.str())
        << path << "\nIf the change is wanted: script/test --update-transcripts";
}
