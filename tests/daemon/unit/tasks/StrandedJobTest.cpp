// A job that is queued after the runner has unlocked the empty queue and before it clears the
// running flag. Such a job waits until the next job is queued. This is a separate program, because
// it replaces pthread_mutex_unlock.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "taskExecutor/TaskExecutor.h"
#include "tests/support/FakePlatform.h"

namespace {

thread_local std::function<void()> t_afterNextUnlock;

}  // namespace

extern "C" int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
    using Function = int (*)(pthread_mutex_t*);
    static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "pthread_mutex_unlock"));
    const int result = next(mutex);
    if (t_afterNextUnlock) {
        std::exchange(t_afterNextUnlock, nullptr)();
    }
    return result;
}

TEST(StrandedJobTest, AJobQueuedWhileTheRunnerLeavesWaitsForTheNextOne) {
    std::vector<std::string> ran;
    const auto note = [&ran](const char* name) { return [&ran, name] { ran.push_back(name); }; };
    const auto executor = TaskExecutor::Create();
    executor->Initiate(0, 0);

    // After the job's destruction, the runner's next unlock is the one of the empty queue.
    const std::thread::id runner = std::this_thread::get_id();
    fake_platform::onLog([&](const fake_platform::Line& line) {
        if (std::this_thread::get_id() == runner &&
            line.text.find("  TaskJob destroyed") != std::string::npos) {
            fake_platform::onLog(nullptr);
            t_afterNextUnlock = [&] {
                std::thread([&] { EXPECT_TRUE(executor->Schedule(note("stranded"))); }).join();
            };
        }
    });
    EXPECT_TRUE(executor->Schedule(note("first")));
    EXPECT_THAT(ran, testing::ElementsAre("first"));

    EXPECT_TRUE(executor->Schedule(note("next")));
    EXPECT_THAT(ran, testing::ElementsAre("first", "stranded", "next"));
}
