// Libraries that end too early.
#include "LibraryFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

class LibraryFileTest : public testing::Test {
protected:
    LibraryFileTest()
        : m_path(fs::temp_directory_path() / ("corvane-library-" + std::to_string(getpid()))) {
        // This program has the shape of a library.
        std::ifstream self("/proc/self/exe", std::ios::binary);
        m_bytes.assign(std::istreambuf_iterator<char>(self), {});
    }
    ~LibraryFileTest() override { fs::remove(m_path); }

    bool isCutOff(const std::string& bytes) const {
        std::ofstream(m_path, std::ios::binary) << bytes;
        return LibraryFile::isCutOff(m_path);
    }

    fs::path m_path;
    std::string m_bytes;
};

TEST_F(LibraryFileTest, AWholeOneIsNotCutOff) {
    EXPECT_FALSE(isCutOff(m_bytes));
}

TEST_F(LibraryFileTest, OneThatEndsInWhatTheLoaderMapsIsCutOff) {
    for (const std::size_t part : {64U, 100U, 1000U, 4096U, 100000U}) {
        EXPECT_TRUE(isCutOff(m_bytes.substr(0, part))) << part;
    }
}

// Its tables of sections come last, and the loader doesn't look at them.
TEST_F(LibraryFileTest, OneThatLacksItsLastBytesIsNot) {
    EXPECT_FALSE(isCutOff(m_bytes.substr(0, m_bytes.size() - 64)));
}

TEST_F(LibraryFileTest, WhatTheLoaderRefusesAnywayIsNot) {
    EXPECT_FALSE(isCutOff(""));
    EXPECT_FALSE(isCutOff(m_bytes.substr(0, 63)));
    EXPECT_FALSE(isCutOff("#!/bin/sh\n" + std::string(1000, '#')));
    EXPECT_FALSE(LibraryFile::isCutOff("/nonexistent/library.so"));
}

}  // namespace
