// Which files of the plugin directory the daemon loads as plugins, and the load order of plugins
// with equal priority.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/FileTime.h"
#include "tests/support/process/Sandbox.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

class DaemonDiscoveryTest : public testing::Test {
protected:
    Sandbox m_sandbox;
};

std::vector<std::string> found(const Log& log) {
    std::vector<std::string> names;
    for (const std::string& rest : log.ofPriority("I").behind("FileManager.cpp: ")) {
        names.push_back(rest.substr(rest.find(" > ") + 3));
    }
    return names;
}

std::vector<std::string> loaded(const Log& log) {
    return log.behind("start dlopen : ");
}

TEST_F(DaemonDiscoveryTest, RegularFilesThatEndInSoAreCandidates) {
    m_sandbox.addPlugin("libfoo.so");
    m_sandbox.addPlugin("bar.so");
    m_sandbox.addPlugin(".so");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_THAT(found(outcome.log), UnorderedElementsAre("libfoo.so", "bar.so", ".so"));
    EXPECT_EQ(outcome.log.count("> end init func"), 3U);
    EXPECT_TRUE(outcome.log.contains(".so: init"));
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonDiscoveryTest, AFileDatedAfter2038IsACandidate) {
    m_sandbox.addPlugin("libx.so");
    setTime(m_sandbox.plugins() / "libx.so", YEAR_2040);
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_THAT(found(outcome.log), ElementsAre("libx.so"));
    EXPECT_EQ(outcome.log.count("> end init func"), 1U);
}

TEST_F(DaemonDiscoveryTest, OtherEndingsAreNotTaken) {
    for (const char* name : {"libx.so.1", "libx.SO", "libx.So", "libx", "libx.so~", "so", "xso"}) {
        m_sandbox.addPlugin(name);
    }
    m_sandbox.addPlugin("libx.so");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_THAT(found(outcome.log), ElementsAre("libx.so"));
    EXPECT_THAT(loaded(outcome.log), ElementsAre("libx.so"));
}

TEST_F(DaemonDiscoveryTest, ASymbolicLinkToALibraryIsACandidateUnderItsOwnName) {
    std::filesystem::copy_file(Sandbox::libraryOf("ordinary"), m_sandbox.directory() / "library");
    std::filesystem::create_symlink("../library", m_sandbox.plugins() / "liblink.so");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_THAT(loaded(outcome.log), ElementsAre("liblink.so"));
    EXPECT_TRUE(outcome.log.contains("liblink.so: init"));
}

TEST_F(DaemonDiscoveryTest, ADanglingSymbolicLinkIsNotACandidate) {
    std::filesystem::create_symlink("nowhere.so", m_sandbox.plugins() / "liblink.so");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_THAT(found(outcome.log), IsEmpty());
    EXPECT_THAT(outcome.log.ofPriority("E").lines(), IsEmpty());
}

TEST_F(DaemonDiscoveryTest, ADirectoryIsNotACandidateWhateverItsName) {
    std::filesystem::create_directory(m_sandbox.plugins() / "x.so");
    std::filesystem::create_symlink("x.so", m_sandbox.plugins() / "y.so");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_THAT(found(outcome.log), IsEmpty());
    EXPECT_THAT(loaded(outcome.log), IsEmpty());
}

TEST_F(DaemonDiscoveryTest, AMissingDirectoryIsOneErrorLineAndStartUpGoesOn) {
    std::filesystem::remove(m_sandbox.plugins());
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(outcome.log.ofPriority("E").transcript(),
              "E QVX: FileManager.cpp: getFilesInDirectory(#) > "
              "can not open directory, plugins/\n");
    EXPECT_TRUE(outcome.log.ofTags({"PLATFORM"}).contains("ecore_main_loop_begin returned"));
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonDiscoveryTest, AFileInPlaceOfTheDirectoryIsOneErrorLineToo) {
    std::filesystem::remove(m_sandbox.plugins());
    std::ofstream(m_sandbox.plugins()) << "not a directory";
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(outcome.log.ofPriority("E").count("can not open directory, plugins/"), 1U);
    EXPECT_EQ(outcome.log.ofPriority("E").lines().size(), 1U);
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonDiscoveryTest, ThreeOfEqualPriorityAreLoadedAsFound) {
    for (const char* name : {"a.so", "b.so", "c.so"}) {
        m_sandbox.addPlugin(name);
    }
    const Log log = m_sandbox.startAndTerminate().log;
    ASSERT_EQ(found(log).size(), 3U);
    EXPECT_EQ(loaded(log), found(log));
}

// The load order differs from the order of discovery, because the queue is a heap.
TEST_F(DaemonDiscoveryTest, FourOfEqualPriorityAreLoadedFirstThirdSecondFourth) {
    for (const char* name : {"a.so", "b.so", "c.so", "d.so"}) {
        m_sandbox.addPlugin(name);
    }
    const Log log = m_sandbox.startAndTerminate().log;
    const auto names = found(log);
    ASSERT_EQ(names.size(), 4U);
    EXPECT_THAT(loaded(log), ElementsAre(names[0], names[2], names[1], names[3]));
}

}  // namespace
