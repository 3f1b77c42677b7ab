// Tests how the log and the system information use the settings.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "tests/host-platform/unit/settings/SettingsFixture.h"
#include "tests/support/process/ChildProcess.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

class SettingsUseTest : public SettingsFixture {
protected:
    static constexpr const char* LINE_START = "[0-9][0-9]:[0-9][0-9]:[0-9][0-9]\\.[0-9]+ [0-9]+ ";

    static ChildProcess::Result run(std::vector<std::string> keys = {},
                                    const std::map<std::string, std::string>& environment = {}) {
        keys.insert(keys.begin(), SETTINGS_PROGRAM);
        return ChildProcess::run({keys, {}, environment});
    }

    std::string logFile() const { return directory() / "log"; }

    std::string logged() const {
        std::ifstream file(logFile());
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(SettingsUseTest, LevelLeavesOutWhatIsBelow) {
    write("[log]\nlevel = error\n");
    EXPECT_THAT(run().errors, MatchesRegex(std::string(LINE_START) + "E TEST: priority 6\n"));
}

TEST_F(SettingsUseTest, FileTakesTheLogAndKeepsWhatItHas) {
    std::ofstream(logFile()) << "before\n";
    write("[log]\noutput = file\nlevel = error\nfile = " + logFile() + '\n');
    const auto result = run();
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(logged(),
                MatchesRegex("before\n" + std::string(LINE_START) + "E TEST: priority 6\n"));
}

TEST_F(SettingsUseTest, StandardErrorTakesTheLogWhateverElseThereIs) {
    write("[log]\noutput = stderr\nlevel = error\nfile = " + logFile() + '\n');
    EXPECT_THAT(run().errors, MatchesRegex(std::string(LINE_START) + "E TEST: priority 6\n"));
    EXPECT_FALSE(std::filesystem::exists(logFile()));
}

TEST_F(SettingsUseTest, AFileThatCannotBeOpenedIsReportedAndTheStandardErrorTaken) {
    write("[log]\noutput = file\nlevel = error\nfile = /nonexistent/log\n");
    EXPECT_THAT(run().errors,
                MatchesRegex(std::string(LINE_START) +
                             "E SETTINGS: the log can't go to /nonexistent/log: No such file or "
                             "directory\n" +
                             LINE_START + "E TEST: priority 6\n"));
}

TEST_F(SettingsUseTest, AFileBehindALinkIsNotWritten) {
    const auto target = directory() / "target";
    std::ofstream(target) << "kept\n";
    std::filesystem::create_symlink(target, logFile());
    write("[log]\noutput = file\nlevel = error\nfile = " + logFile() + '\n');
    EXPECT_THAT(run().errors,
                HasSubstr("E SETTINGS: the log can't go to " + logFile() + ": it is a link\n"));
    EXPECT_EQ(logged(), "kept\n");
}

TEST_F(SettingsUseTest, APipeThatNobodyReadsDoesNotHangTheStart) {
    ASSERT_EQ(mkfifo(logFile().c_str(), 0600), 0);
    write("[log]\noutput = file\nlevel = error\nfile = " + logFile() + '\n');
    const auto result = run();
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.errors, HasSubstr("E SETTINGS: the log can't go to " + logFile() +
                                         ": No such device or address\n"));
}

TEST_F(SettingsUseTest, APipeThatIsFullDoesNotHangTheProgram) {
    ASSERT_EQ(mkfifo(logFile().c_str(), 0600), 0);
    const int reader = open(logFile().c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    const std::string page(4096, 'x');
    while (::write(reader, page.data(), page.size()) > 0) {
    }
    write("[log]\noutput = file\nfile = " + logFile() + '\n');
    EXPECT_EQ(run().status, 0);
    close(reader);
}

TEST_F(SettingsUseTest, AFileThatIsNotGivenIsReported) {
    write("[log]\noutput = file\n");
    EXPECT_THAT(run().errors,
                HasSubstr("E SETTINGS: [log] output is file, but no file is given\n"));
}

TEST_F(SettingsUseTest, AFullDiskDoesNoHarm) {
    write("[log]\noutput = file\nfile = /dev/full\n");
    const auto result = run({"key"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "no key\n");
    EXPECT_EQ(result.errors, "");
}

// An error is logged once, although several libraries read the file.
TEST_F(SettingsUseTest, ComplaintsAreMadeOnceAtAnyLevel) {
    write("[log]\nlevel = error\ncolour = red\n");
    const auto errors = run({"key"}).errors;
    EXPECT_THAT(errors, MatchesRegex(std::string(LINE_START) +
                                     "E SETTINGS: [^\n]*platform.conf:3: "
                                     "\\[log\\] has no key \"colour\"[^\n]*\n" +
                                     LINE_START + "E TEST: priority 6\n"));
}

// A set-group-ID program has more privileges than the user who starts it, and that user sets the
// environment.
TEST_F(SettingsUseTest, TheEnvironmentIsIgnoredByAProgramThatChangesItsRights) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give a program to another group";
    }
    const auto program = directory() / "program";
    std::filesystem::copy_file(SETTINGS_PROGRAM, program);
    ASSERT_EQ(chown(program.c_str(), 0, 65534), 0);
    ASSERT_EQ(chmod(program.c_str(), 02755), 0);
    write("[system-info]\nsettings = 1\n");
    const auto info = (directory() / "info").string();
    std::ofstream(info) << "file = 2\n";
    const auto result =
        ChildProcess::run({{program, "settings", "file"},
                           {},
                           {{"CORVANE_SYSTEM_INFO", info}, {"CORVANE_LOG_LEVEL", "error"}}});
    EXPECT_EQ(result.output, "no settings\nno file\n");
    EXPECT_THAT(result.errors, HasSubstr("I TEST: priority 4\n"));
}

TEST_F(SettingsUseTest, SystemInformationComesFromTheSettings) {
    write("[system-info]\ncom.example/a.b = 4\nother = -1\n");
    EXPECT_EQ(run({"com.example/a.b", "other", "third"}).output,
              "com.example/a.b=4\nother=-1\nno third\n");
}

TEST_F(SettingsUseTest, SystemInformationOfTheEnvironmentGoesFirst) {
    write("[system-info]\nboth = 1\nsettings = 2\n");
    const auto file = (directory() / "info").string();
    std::ofstream(file) << "both = 3\nfile = 4\n";
    EXPECT_EQ(run({"both", "settings", "file"}, {{"CORVANE_SYSTEM_INFO", file}}).output,
              "both=3\nsettings=2\nfile=4\n");
}

}  // namespace
