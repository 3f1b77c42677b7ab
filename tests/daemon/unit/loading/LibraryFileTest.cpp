// Detection of truncated library files.
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "daemon/src/LibraryFile.h"

namespace {

bool g_fstatFails = false;

}  // namespace

extern "C" int fstat(int fd, struct stat* status) noexcept {
    if (g_fstatFails) {
        errno = EIO;
        return -1;
    }
    return fstatat(fd, "", status, AT_EMPTY_PATH);
}

namespace {

namespace fs = std::filesystem;

class LibraryFileTest : public testing::Test {
protected:
    LibraryFileTest()
        : m_path(fs::temp_directory_path() / ("corvane-library-" + std::to_string(getpid()))) {
        // This program, a position-independent executable, has the file format of a library.
        std::ifstream self("/proc/self/exe", std::ios::binary);
        m_bytes.resize(fs::file_size("/proc/self/exe"));
        self.read(m_bytes.data(), static_cast<std::streamsize>(m_bytes.size()));
    }
    ~LibraryFileTest() override { fs::remove(m_path); }

    /// Returns the file offset at which the last loaded segment ends.
    static std::size_t endOfSegments(const std::string& library) {
        ElfW(Ehdr) header;
        std::memcpy(&header, library.data(), sizeof header);
        std::size_t end = 0;
        for (std::size_t i = 0; i < header.e_phnum; ++i) {
            ElfW(Phdr) segment;
            std::memcpy(&segment, library.data() + header.e_phoff + i * sizeof segment,
                        sizeof segment);
            if (segment.p_type == PT_LOAD) {
                end = std::max(end, segment.p_offset + segment.p_filesz);
            }
        }
        return end;
    }

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
    for (const std::size_t part : {1000U, 4096U, 100000U}) {
        EXPECT_TRUE(isCutOff(m_bytes.substr(0, part))) << part;
    }
}

TEST_F(LibraryFileTest, OneThatLacksTheLastPageOfWhatTheLoaderMapsIsCutOff) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t lastPage = (endOfSegments(m_bytes) - 1) / page * page;
    EXPECT_TRUE(isCutOff(m_bytes.substr(0, lastPage)));
    EXPECT_FALSE(isCutOff(m_bytes.substr(0, lastPage + 1)));
}

// The loader maps whole pages. The part of the last page after the file's end reads as zeros.
TEST_F(LibraryFileTest, OneThatLacksTheLastByteOfItsLastPageIsNotAndCanBeOpened) {
    std::ifstream file(UNIT_PLUGIN_ROOT "/plugins/ordinary.so", std::ios::binary);
    const std::string library(std::istreambuf_iterator<char>(file), {});
    EXPECT_FALSE(isCutOff(library.substr(0, endOfSegments(library) - 1)));
    void* const handle = dlopen(m_path.c_str(), RTLD_LAZY);
    ASSERT_NE(handle, nullptr) << dlerror();
    EXPECT_NE(dlsym(handle, "PLUGIN_INIT"), nullptr);
    dlclose(handle);
}

TEST_F(LibraryFileTest, OneOfMoreThan4GiBIsNot) {
    EXPECT_FALSE(isCutOff(m_bytes));
    constexpr off_t size = (off_t{1} << 32) + 1;
    ASSERT_EQ(truncate(m_path.c_str(), size), 0) << std::strerror(errno);
    EXPECT_FALSE(LibraryFile::isCutOff(m_path));
}

TEST_F(LibraryFileTest, OneOfUnknownSizeIsNot) {
    EXPECT_TRUE(isCutOff(m_bytes.substr(0, 4096)));
    g_fstatFails = true;
    EXPECT_FALSE(LibraryFile::isCutOff(m_path));
    g_fstatFails = false;
}

TEST_F(LibraryFileTest, ATableOfSegmentsMayStandAnywhere) {
    ElfW(Ehdr) header;
    std::memcpy(&header, m_bytes.data(), sizeof header);
    const auto table = m_bytes.substr(header.e_phoff, header.e_phnum * sizeof(ElfW(Phdr)));
    header.e_phoff = m_bytes.size();
    std::memcpy(m_bytes.data(), &header, sizeof header);
    EXPECT_FALSE(isCutOff(m_bytes + table));
    // The loader itself refuses a file with an incomplete table.
    EXPECT_FALSE(isCutOff(m_bytes + table.substr(0, table.size() - 1)));
}

// The section headers are at the end of the file, and the loader does not read them.
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
