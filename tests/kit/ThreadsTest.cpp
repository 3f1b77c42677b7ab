// Tests of events that are delivered on other threads than the test's.
#include <corvane/testkit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>

#include "tests/kit/Fixtures.h"

namespace {

using namespace corvane::testkit;
using testing::Contains;
using testing::HasSubstr;
using testing::Ne;
using testing::Not;
using testing::ThrowsMessage;
using std::chrono_literals::operator""ms;

/// A pipe that the plugin `reads` reads from: its callback blocks until release() is called.
class Pipe {
public:
    Pipe() {
        if (pipe(m_ends.data()) != 0) {
            throw std::runtime_error("no pipe");
        }
    }
    ~Pipe() {
        close(m_ends[0]);
        close(m_ends[1]);
    }
    int fd() const { return m_ends[0]; }
    Arguments name() const { return {{"name", std::to_string(fd())}}; }
    void release(int times) {
        const std::string bytes(static_cast<std::size_t>(times), 'x');
        if (write(m_ends[1], bytes.data(), bytes.size()) != times) {
            throw std::runtime_error("the pipe can't be written");
        }
    }

private:
    std::array<int, 2> m_ends{};
};

TEST(ThreadsTest, DeliversOnTheTestsThread) {
    Host host;
    host.load(fixture("asks"));
    host.emit("bt-adapter-state-changed");
    EXPECT_THAT(host.log(), Contains(HasText("init on the main thread")));
    EXPECT_THAT(host.log(), Contains(HasText("callback on the main thread")));
}

TEST(ThreadsTest, DeliversOnAnotherThread) {
    Host host;
    host.load(fixture("asks"));
    host.emitFromThreads(1, "bt-adapter-state-changed");
    host.waitUntilHandled();
    EXPECT_THAT(host.log(), Contains(HasText("callback on another thread")));
}

TEST(ThreadsTest, DeliversOnceOnEachOfManyThreads) {
    Host host;
    host.load(fixture("asks"));
    // No more at once than the plugin's queue takes: a full queue can be left without a runner
    // until the threads that wait for room time out.
    for (int i = 0; i < 20; ++i) {
        host.emitFromThreads(8, "bt-adapter-state-changed");
        host.waitUntilHandled();
    }
    EXPECT_THAT(host.log(), Contains(HasText("callback on")).Times(160));
    EXPECT_THAT(host.unload(), LeavesNothingBehind());
}

TEST(ThreadsTest, DoesNotWaitForTheDeliveries) {
    Pipe pipe;
    Host host;
    host.load(fixture("reads"));
    host.emitFromThreads(1, "bt-adapter-name-changed", pipe.name());
    EXPECT_THAT(host.waitForLog("reading"), Ne(std::nullopt));
    // The thread that is inside the plugin will handle this event too.
    host.emit("bt-adapter-name-changed", pipe.name());
    EXPECT_THAT(host.log(), Not(Contains(HasText("read x"))));
    pipe.release(2);
    host.waitUntilHandled();
    EXPECT_THAT(host.log(), Contains(HasText("read x")).Times(2));
}

TEST(ThreadsTest, TellsWhatTakesTooLong) {
    Pipe pipe;
    Host host;
    host.load(fixture("reads"));
    host.emitFromThreads(1, "bt-adapter-name-changed", pipe.name());
    EXPECT_THAT([&] { host.waitUntilHandled(20ms); },
                ThrowsMessage<TimedOut>(
                    HasSubstr("1 event(s), of them bt-adapter-name-changed, within 20 ms")));
    pipe.release(1);
    EXPECT_THAT(host.unload(), LeavesNothingBehind());
}

TEST(ThreadsTest, WaitsForWorkThatAThreadOfThePluginDoes) {
    Pipe pipe;
    Host host;
    host.setSystemInformation("reads/fd", pipe.fd());
    host.load(fixture("reads"));
    EXPECT_THAT(host.waitForLog("reading"), Ne(std::nullopt));
    EXPECT_THAT([&] { host.waitUntilHandled(20ms); },
                ThrowsMessage<TimedOut>(HasSubstr("still inside the plugin's work")));
    pipe.release(1);
    host.waitUntilHandled();
    EXPECT_THAT(host.log(), Contains(HasText("read x")));
    EXPECT_THAT(host.unload(), LeavesNothingBehind());
}

TEST(ThreadsTest, FinishesWhatTheTestDoesNotWaitFor) {
    Pipe pipe;
    pipe.release(3);
    Host host;
    host.load(fixture("reads"));
    host.emitFromThreads(3, "bt-adapter-name-changed", pipe.name());
}

TEST(ThreadsTest, PassesOnWhatACallbackThrows) {
    Host host;
    host.load(fixture("callback_throws"));
    EXPECT_THAT([&] { host.emit("bt-adapter-state-changed"); },
                ThrowsMessage<std::runtime_error>("from a callback"));
    host.emitFromThreads(1, "bt-adapter-state-changed");
    EXPECT_THAT([&] { host.waitUntilHandled(); },
                ThrowsMessage<std::runtime_error>("from a callback"));
    host.waitUntilHandled();
}

TEST(ThreadsTest, NeedsAThread) {
    Host host;
    host.load(fixture("asks"));
    EXPECT_THAT([&] { host.emitFromThreads(0, "bt-adapter-state-changed"); },
                ThrowsMessage<std::invalid_argument>(HasSubstr("number of threads is 0")));
}

}  // namespace
