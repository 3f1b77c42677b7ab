// Tests of the installed files of each component against the lists in installed/.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/Installation.h"

namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::StartsWith;

std::vector<std::string> linesOf(const std::string& file) {
    std::ifstream input(file);
    EXPECT_TRUE(input) << file;
    std::vector<std::string> lines;
    for (std::string line; std::getline(input, line);) {
        lines.push_back(line);
    }
    return lines;
}

void expectFilesOf(const std::string& component) {
    Installation installation;
    installation.install(component);
    auto expected = linesOf(INSTALLED "/" + component + ".txt");
    std::ranges::sort(expected);
    EXPECT_THAT(installation.files(), ElementsAreArray(expected));
}

TEST(InstalledFilesTest, DaemonIsComplete) {
    expectFilesOf("daemon");
}

TEST(InstalledFilesTest, HostPlatformIsComplete) {
    expectFilesOf("host-platform");
}

TEST(InstalledFilesTest, DevelopmentFilesAreComplete) {
    expectFilesOf("dev");
}

TEST(InstalledFilesTest, ThePluginDirectoryIsItsOwnersToWriteWhateverTheUmask) {
    Installation installation;
    const auto before = umask(0);
    installation.install("daemon");
    umask(before);
    EXPECT_EQ(fs::status(installation.at(PLUGINS)).permissions(), fs::perms(0755));
}

TEST(InstalledFilesTest, EveryFileBelongsToAComponent) {
    Installation installation;
    installation.install("Unspecified");
    EXPECT_THAT(installation.files(), IsEmpty());
}

TEST(InstalledFilesTest, ChangelogBeginsWithTheVersionOfTheProject) {
    Installation installation;
    installation.install("daemon");
    const auto changelog = ChildProcess::run(
        {.command = {"gzip", "-dc", installation.at(DOCS "/corvane/changelog.gz")}});
    EXPECT_EQ(changelog.status, 0) << changelog.errors;
    EXPECT_THAT(changelog.output, StartsWith("corvane (" VERSION ") "));
}

// An empty entry would be the current directory.
TEST(InstalledFilesTest, TheDaemonLooksForLibrariesOnlyInPlacesRelativeToItself) {
    const auto dynamic = ChildProcess::run({.command = {"readelf", "-d", DAEMON}});
    EXPECT_EQ(dynamic.status, 0) << dynamic.errors;
    EXPECT_THAT(dynamic.output, ContainsRegex(R"(\[\$ORIGIN/[^]:]*(:\$ORIGIN/[^]:]*)*\])"));
}

}  // namespace
