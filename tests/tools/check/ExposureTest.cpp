// Tests that `corvane order` and `check` warn if other users can change what a daemon runs.
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/process/FileTime.h"
#include "tests/support/process/TemporaryDirectory.h"
#include "tests/tools/check/RunTool.h"

namespace {

namespace fs = std::filesystem;

/// Creates a directory with a plugin. Only their owner can write to them.
class ExposureTest : public testing::Test {
protected:
    ExposureTest() {
        fs::copy_file(fixture("clean"), m_plugin = m_directory / "libclean.so");
        fs::permissions(m_plugin, fs::perms(0644));
    }

    static std::string warning(const fs::path& path, const std::string& what) {
        return "corvane: warning: " + path.string() + what + '\n';
    }

    // Runs the command with and without --json and returns its warnings. Expects both runs to give
    // the same warnings, and the exit status 0.
    std::string warningsOf(const std::string& command) const {
        const bool isCheck = command == "check";
        const auto result = runTool({command, isCheck ? m_plugin : m_directory});
        EXPECT_EQ(result.status, 0) << result.output;
        const auto asJson = runTool({command, "--json", isCheck ? m_plugin : m_directory});
        EXPECT_EQ(asJson.errors, "");
        const auto json = nlohmann::json::parse(asJson.output);
        std::string sentences;
        for (const auto& sentence : json.at("exposed")) {
            sentences += "corvane: warning: " + sentence.get<std::string>() + '\n';
        }
        EXPECT_EQ(sentences, result.errors);
        return result.errors;
    }

    TemporaryDirectory m_temporary;
    const fs::path m_directory = m_temporary.path();
    fs::path m_plugin;
};

TEST_F(ExposureTest, NothingIsSaidOfWhatItsOwnerAloneMayWrite) {
    EXPECT_EQ(warningsOf("order"), "");
    EXPECT_EQ(warningsOf("check"), "");
}

TEST_F(ExposureTest, AFileThatEveryoneMayWriteIsNamed) {
    fs::permissions(m_plugin, fs::perms(0666));
    EXPECT_EQ(warningsOf("order"), warning(m_plugin, " is writable by everyone"));
    EXPECT_EQ(warningsOf("check"), warning(m_plugin, " is writable by everyone"));
}

TEST_F(ExposureTest, ADirectoryThatEveryoneMayWriteIsNamed) {
    fs::permissions(m_directory, fs::perms(0777));
    EXPECT_EQ(warningsOf("order"), warning(m_directory, " is writable by everyone"));
    EXPECT_EQ(warningsOf("check"), warning(m_directory, " is writable by everyone"));
}

TEST_F(ExposureTest, ADirectoryDatedAfter2038IsExaminedToo) {
    fs::permissions(m_directory, fs::perms(0777));
    setTime(m_directory, YEAR_2040);
    EXPECT_EQ(warningsOf("order"), warning(m_directory, " is writable by everyone"));
    EXPECT_EQ(warningsOf("check"), warning(m_directory, " is writable by everyone"));
}

TEST_F(ExposureTest, AStickyDirectoryAddsPluginsButReplacesNone) {
    fs::permissions(m_directory, fs::perms(01777));
    EXPECT_EQ(warningsOf("order"), warning(m_directory, " is writable by everyone"));
    EXPECT_EQ(warningsOf("check"), "");
}

// Returns a user other than root whose primary group is not that of root.
const passwd& someoneElse() {
    setpwent();
    const passwd* user = getpwent();
    while (user->pw_uid == 0 || user->pw_gid == 0) {
        user = getpwent();
    }
    return *user;
}

TEST_F(ExposureTest, AGroupIsNamedIfOthersBelongToIt) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root may give a file to any group";
    }
    const gid_t group = someoneElse().pw_gid;
    fs::permissions(m_plugin, fs::perms(0664));
    EXPECT_EQ(warningsOf("order"), "") << "root is alone in its group";
    ASSERT_EQ(chown(m_plugin.c_str(), -1, group), 0);
    EXPECT_EQ(warningsOf("order"), warning(m_plugin, std::string(" is writable by the group ") +
                                                         getgrgid(group)->gr_name));
}

TEST_F(ExposureTest, AnOwnerWhoIsNeitherRootNorTheUserIsNamed) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root may give a file away";
    }
    const auto& user = someoneElse();
    const std::string name = user.pw_name;
    ASSERT_EQ(chown(m_plugin.c_str(), user.pw_uid, -1), 0);
    EXPECT_EQ(warningsOf("order"), warning(m_plugin, " belongs to " + name));
    EXPECT_EQ(warningsOf("check"), warning(m_plugin, " belongs to " + name));
}

}  // namespace
