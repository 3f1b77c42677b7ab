// Tests the reading of settings: all keys, the errors of a bad file, and the environment variables.
#include <dlog.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/host-platform/unit/settings/SettingsFixture.h"

namespace {

using corvane::host::LogOutput;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class SettingsTest : public SettingsFixture {
protected:
    std::string at(int line) const { return path() + ':' + std::to_string(line) + ": "; }
};

TEST_F(SettingsTest, HaveDefaultsInAnEmptyFile) {
    write("");
    const auto settings = read();
    EXPECT_THAT(settings.complaints, IsEmpty());
    EXPECT_EQ(settings.log.output, LogOutput::automatic);
    EXPECT_EQ(settings.log.file, "");
    EXPECT_LE(settings.log.level, DLOG_PRIORITY_DEBUG);
    EXPECT_THAT(settings.systemInfo, IsEmpty());
    EXPECT_EQ(settings.inject.socket, "");
    EXPECT_EQ(settings.inject.threads, 0U);
    EXPECT_EQ(settings.callbacks.slow.count(), 100);
    EXPECT_EQ(settings.bluez.agent, "");
    EXPECT_FALSE(settings.bluez.agentAccepts);
    EXPECT_FALSE(settings.bluez.agentIsDefault);
    EXPECT_THAT(settings.bluez.profiles, IsEmpty());
    EXPECT_EQ(settings.bluez.inputDirectory, "/dev/input");
    EXPECT_EQ(settings.sound.server, "");
    EXPECT_THAT(settings.sound.routes, IsEmpty());
}

TEST_F(SettingsTest, TakeEveryKey) {
    write(
        "[log]\noutput = file\nfile = /a b\nlevel = warning\n"
        "[system-info]\ncom.example/a.b = -7\nbig=2147483647\n"
        "[inject]\nsocket = /run/i.sock\nthreads = 8\n"
        "[callbacks]\nslow_ms = 0\n"
        "[bluez]\nagent = KeyboardDisplay\nagent_answer = accept\nagent_default = yes\n"
        "input_directory = /tmp\n"
        "profiles = 00001101-0000-1000-8000-00805F9B34FB , 00001112-0000-1000-8000-00805f9b34fb\n"
        "profiles = 00001105-0000-1000-8000-00805f9b34fb\n"
        "[sound]\nserver = unix:/run/pulse\n"
        "route.bt_* = bluetooth\nroute.* = line-out\n");
    const auto settings = read();
    EXPECT_THAT(settings.complaints, IsEmpty());
    EXPECT_EQ(settings.log.output, LogOutput::file);
    EXPECT_EQ(settings.log.file, "/a b");
    EXPECT_EQ(settings.log.level, DLOG_PRIORITY_WARNING);
    EXPECT_THAT(settings.systemInfo,
                ElementsAre(std::pair<const std::string, int>("big", 2147483647),
                            std::pair<const std::string, int>("com.example/a.b", -7)));
    EXPECT_EQ(settings.inject.socket, "/run/i.sock");
    EXPECT_EQ(settings.inject.threads, 8U);
    EXPECT_EQ(settings.callbacks.slow.count(), 0);
    EXPECT_EQ(settings.bluez.agent, "KeyboardDisplay");
    EXPECT_TRUE(settings.bluez.agentAccepts);
    EXPECT_TRUE(settings.bluez.agentIsDefault);
    EXPECT_EQ(settings.bluez.inputDirectory, "/tmp");
    EXPECT_THAT(settings.bluez.profiles, ElementsAre("00001101-0000-1000-8000-00805f9b34fb",
                                                     "00001112-0000-1000-8000-00805f9b34fb",
                                                     "00001105-0000-1000-8000-00805f9b34fb"));
    EXPECT_EQ(settings.sound.server, "unix:/run/pulse");
    ASSERT_EQ(settings.sound.routes.size(), 2U);
    EXPECT_EQ(settings.sound.routes[0].pattern, "bt_*");
    EXPECT_EQ(settings.sound.routes[0].route, SOUND_TV_OUTPUT_ROUTE_BLUETOOTH);
    EXPECT_EQ(settings.sound.routes[1].pattern, "*");
    EXPECT_EQ(settings.sound.routes[1].route, SOUND_TV_OUTPUT_ROUTE_LINE_OUT);
}

TEST_F(SettingsTest, IgnoreCommentsIndentationAndLineEndsOfOtherSystems) {
    write(
        "\xef\xbb\xbf# c\r\n;c\n\n  \t\n[inject]\r\n  threads = 3 ; "
        "three\r\n\tsocket=/s\n#[x\nsocket =");
    const auto settings = read();
    EXPECT_THAT(settings.complaints, IsEmpty());
    EXPECT_EQ(settings.inject.threads, 3U);
    EXPECT_EQ(settings.inject.socket, "");
}

TEST_F(SettingsTest, ReportUnknownSectionsAndKeysWithWhatThereIs) {
    write(
        "level = info\n[logs]\nlevel = info\nfile = /x\n[log]\ncolour = red\n[sound]\nroute. = "
        "hdmi\n");
    EXPECT_THAT(read().complaints,
                ElementsAre(at(1) + "there is no section above this line; the sections are [log], "
                                    "[system-info], [inject], [callbacks], [bluez], [sound]",
                            at(3) + "there is no section [logs]; the sections are [log], "
                                    "[system-info], [inject], [callbacks], [bluez], [sound]",
                            at(6) + "[log] has no key \"colour\"; its keys are output, file, "
                                    "level",
                            at(8) + "[sound] has no key \"route.\"; its keys are server, route.*"));
}

TEST_F(SettingsTest, ReportLinesThatAreNone) {
    write("[log\nlevel\n[log]\nlevel = error\nnothing");
    const auto settings = read();
    const std::string text = "this is neither \"[section]\" nor \"key = value\" nor a comment";
    EXPECT_THAT(settings.complaints, ElementsAre(at(1) + text, at(2) + text, at(5) + text));
    EXPECT_EQ(settings.log.level, DLOG_PRIORITY_ERROR);
}

TEST_F(SettingsTest, ReportALineThatIsTooLongAndUseTheOthers) {
    write("[log]\nfile = /" + std::string(400, 'x') + "\nlevel = info\n");
    const auto settings = read();
    EXPECT_THAT(settings.complaints, ElementsAre(StartsWith(at(2) + "the line has more than ")));
    EXPECT_EQ(settings.log.file, "");
    EXPECT_EQ(settings.log.level, DLOG_PRIORITY_INFO);
}

TEST_F(SettingsTest, ReportAFileThatCannotBeRead) {
    setenv("CORVANE_PLATFORM_CONF", "/nonexistent/platform.conf", 1);
    EXPECT_THAT(read().complaints, ElementsAre("/nonexistent/platform.conf: No such file or "
                                               "directory; every setting has its default"));
    setenv("CORVANE_PLATFORM_CONF", "/tmp", 1);
    EXPECT_THAT(read().complaints, ElementsAre("/tmp: cannot be read to its end"));
}

TEST_F(SettingsTest, ReadNoMoreThanAMebibyteOfAFile) {
    write("[log]\nfile = /" + std::string(1 << 20, 'x') + "\nlevel = error\n");
    EXPECT_THAT(read().complaints,
                ElementsAre(path() + ": has more than 1048576 bytes; the rest is ignored"));
    EXPECT_EQ(read().log.level, 0);
}

TEST_F(SettingsTest, EndWhereTheFileHasNoEnd) {
    setenv("CORVANE_PLATFORM_CONF", "/dev/zero", 1);
    EXPECT_THAT(read().complaints,
                ElementsAre("/dev/zero: has more than 1048576 bytes; the rest is ignored"));
}

TEST_F(SettingsTest, AreNotWaitedForAtAPipeThatNobodyWrites) {
    const std::string pipe = path() + ".pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    setenv("CORVANE_PLATFORM_CONF", pipe.c_str(), 1);
    EXPECT_THAT(read().complaints, ElementsAre(pipe + ": cannot be read to its end"));
    std::filesystem::remove(pipe);
}

TEST_F(SettingsTest, LetTheEnvironmentGoFirst) {
    write("[log]\nlevel = error\n[inject]\nsocket = /file\n");
    setenv("CORVANE_LOG_LEVEL", "4", 1);
    setenv("CORVANE_INJECT_SOCKET", "/environment", 1);
    EXPECT_EQ(read().log.level, DLOG_PRIORITY_INFO);
    EXPECT_EQ(read().inject.socket, "/environment");
    setenv("CORVANE_LOG_LEVEL", "", 1);
    setenv("CORVANE_INJECT_SOCKET", "", 1);
    EXPECT_EQ(read().log.level, DLOG_PRIORITY_ERROR);
    EXPECT_EQ(read().inject.socket, "/file");
}

TEST_F(SettingsTest, KeepTheFileWhereTheEnvironmentIsBad) {
    write("[log]\nlevel = error\n");
    setenv("CORVANE_LOG_LEVEL", "loud", 1);
    const auto settings = read();
    EXPECT_EQ(settings.log.level, DLOG_PRIORITY_ERROR);
    EXPECT_THAT(settings.complaints,
                ElementsAre("CORVANE_LOG_LEVEL: level is \"loud\"; it must be debug, info, "
                            "warning, error or 3 to 6"));
}

TEST_F(SettingsTest, TakeTheSampleAsItIs) {
    setenv("CORVANE_PLATFORM_CONF", SAMPLE_SETTINGS, 1);
    EXPECT_THAT(read().complaints, IsEmpty());
}

struct BadValue {
    const char* section;
    const char* line;
    const char* allowed;
};

class SettingsValueTest : public SettingsFixture, public testing::WithParamInterface<BadValue> {};

TEST_P(SettingsValueTest, IsReportedAndTheDefaultStays) {
    const auto& [section, line, allowed] = GetParam();
    write(std::string("[") + section + "]\n" + line + '\n');
    const auto settings = read();
    ASSERT_EQ(settings.complaints.size(), 1U);
    EXPECT_THAT(settings.complaints[0], StartsWith(path() + ":2: "));
    EXPECT_THAT(settings.complaints[0], testing::EndsWith(std::string("; it must be ") + allowed));
    EXPECT_EQ(settings.log.output, LogOutput::automatic);
    EXPECT_EQ(settings.log.file, "");
    EXPECT_EQ(settings.log.level, 0);
    EXPECT_THAT(settings.systemInfo, IsEmpty());
    EXPECT_EQ(settings.inject.threads, 0U);
    EXPECT_EQ(settings.inject.socket, "");
    EXPECT_EQ(settings.callbacks.slow.count(), 100);
    EXPECT_EQ(settings.bluez.agent, "");
    EXPECT_THAT(settings.bluez.profiles, IsEmpty());
    EXPECT_EQ(settings.bluez.inputDirectory, "/dev/input");
    EXPECT_THAT(settings.sound.routes, IsEmpty());
}

constexpr const char* ALLOWED_UUIDS =
    "UUIDs like 00001101-0000-1000-8000-00805f9b34fb, separated by commas";
constexpr const char* SOCKET_PATH = "a path of at most 107 characters, or empty";

INSTANTIATE_TEST_SUITE_P(
    All, SettingsValueTest,
    testing::Values(
        BadValue{"log", "output = syslog", "auto, stderr, journal or file"},
        BadValue{"log", "output =", "auto, stderr, journal or file"},
        BadValue{"log", "file = log.txt", "a path that starts with '/'"},
        BadValue{"log", "level = 7", "debug, info, warning, error or 3 to 6"},
        BadValue{"system-info", "a = 1x", "a 32-bit integer"},
        BadValue{"system-info", "a = 2147483648", "a 32-bit integer"},
        BadValue{"system-info", "a =", "a 32-bit integer"},
        BadValue{"inject", "threads = 9", "a number from 0 to 8"},
        BadValue{"inject", "threads = -1", "a number from 0 to 8"},
        BadValue{"inject",
                 ("socket = /123456789012345678901234567890123456789012345678901234567890"
                  "123456789012345678901234567890123456789012345678"),
                 SOCKET_PATH},
        BadValue{"callbacks", "slow_ms = -1", "a number of milliseconds from 0 to 3600000"},
        BadValue{"bluez", "agent = displayonly",
                 "none, DisplayOnly, DisplayYesNo, KeyboardOnly, NoInputNoOutput or "
                 "KeyboardDisplay"},
        BadValue{"bluez", "agent_answer = yes", "accept or reject"},
        BadValue{"bluez", "agent_default = true", "yes or no"},
        BadValue{"bluez", "profiles = 1101", ALLOWED_UUIDS},
        BadValue{"bluez", "profiles = 00001101-0000-1000-8000-00805f9b34fb,", ALLOWED_UUIDS},
        BadValue{"bluez", "profiles = 00001101-0000-1000-8000-00805f9b34fg", ALLOWED_UUIDS},
        BadValue{"bluez", "input_directory =", "a path that starts with '/'"},
        BadValue{"sound", "route.x = radio", "speaker, bluetooth, optical, hdmi or line-out"}));

}  // namespace
