// No space for the log and for the socket. Only the daemon sees a small file system, which is
// mounted on its directory "small". The test accesses it through /proc.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/daemon/faults/Figures.h"
#include "tests/daemon/faults/Mounts.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"

namespace fs = std::filesystem;
using testing::HasSubstr;

namespace {

class DeviceFaultSpaceTest : public testing::Test {
protected:
    // Prepares a daemon with its log and socket in "small". Its starter runs `script`, which fills
    // "small". Returns false if the system does not allow mounts.
    bool prepare(const std::string& options, const std::string& script) {
        const auto small = m_sandbox.directory() / "small";
        fs::create_directory(small);
        m_sandbox.addPlugin("libfoo.so", "subscriber");
        m_sandbox.setSettings("[callbacks]\nslow_ms = 0\n[log]\noutput = file\nfile = " +
                              (small / "log").string() + "\n[inject]\nsocket = small/inject\n");
        m_sandbox.setEnvironment("CORVANE_INJECT_SOCKET", "");
        const auto starter =
            starterWithMounts("mount -t tmpfs -o mode=0700," + options + " none small; " + script);
        m_sandbox.setStarter(starter);
        return !starter.empty();
    }
    // Returns a path of "small" as the daemon sees it.
    fs::path small() {
        return "/proc/" + std::to_string(m_sandbox.daemon().id()) + "/root" +
               fs::canonical(m_sandbox.directory()).string() + "/small";
    }
    static std::string readFile(std::ifstream& file) {
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    // Repeats the event until the daemon listens, because its log can't show that it has started.
    std::string emitFirst() {
        const auto start = Longest::Clock::now();
        std::string answer;
        do {
            answer = emit();
        } while (answer.find("no daemon listens") != std::string::npos &&
                 Longest::Clock::now() - start < HANG);
        return answer;
    }
    std::string emit() {
        const auto result = ChildProcess::run(
            {.command = {CORVANE_COMMAND, "--socket", (small() / "inject").string(), "emit",
                         "bt-adapter-state-changed"}});
        return result.output + result.errors;
    }

    Sandbox m_sandbox;
};

constexpr const char* DELIVERED = "bt-adapter-state-changed: delivered to 1 callback\n";

TEST_F(DeviceFaultSpaceTest, AFullDiskLosesLogLinesAndNothingElse) {
    if (!prepare("size=64k", "! cat /dev/zero 2>/dev/null >small/ballast")) {
        GTEST_SKIP() << "this system does not allow mounts";
    }
    m_sandbox.launch();
    ASSERT_EQ(emitFirst(), DELIVERED);
    fs::remove(small() / "ballast");
    EXPECT_EQ(emit(), DELIVERED);
    std::ifstream log(small() / "log");
    const auto start = Longest::Clock::now();
    EXPECT_EQ(m_sandbox.terminate().status, 0);
    Longest end;
    end.add(start);
    const Log written(readFile(log));
    EXPECT_EQ(written.ofTags({"FIXTURE"}).texts(),
              "libfoo.so: subscription 0: result 0, state 1\n"
              "libfoo.so: unsubscribe returned 0\n"
              "libfoo.so: closed\n");
    EXPECT_TRUE(written.ofTags({""}).lines().empty()) << written.ofTags({""}).texts();
    printFigure(
        "Log on a full file system: events still arrived, whole lines came again when "
        "there was room, ended in order in " +
        end.text());
}

TEST_F(DeviceFaultSpaceTest, WithoutRoomForALogOrASocketTheDaemonSaysSoAndRuns) {
    if (!prepare("size=64k,nr_inodes=3", "touch small/1 small/2; ! touch small/3 2>/dev/null")) {
        GTEST_SKIP() << "this system does not allow mounts";
    }
    m_sandbox.start();
    const Outcome outcome = m_sandbox.terminate();
    EXPECT_EQ(outcome.status, 0);
    const auto errors = outcome.log.ofPriority("E").texts();
    EXPECT_THAT(errors, HasSubstr("the log can't go to " + m_sandbox.directory().string() +
                                  "/small/log: No space left on device"));
    EXPECT_THAT(errors, HasSubstr("no injection: small/inject: it can't be listened to: No space "
                                  "left on device"));
    EXPECT_EQ(outcome.log.ofPriority("E").lines().size(), 2U);
    EXPECT_EQ(outcome.log.count("libfoo.so: closed"), 1U);
    printFigure("No room for a log file nor for the socket: two error lines, ended in order");
}

}  // namespace
