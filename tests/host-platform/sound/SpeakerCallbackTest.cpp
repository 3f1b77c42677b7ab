// Tests which thread calls the platform's speaker-changed callback, and how long the thread that
// follows the sound server exists.
#include <Ecore.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sound_manager_tv.h>
#include <stdlib.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "tests/host-platform/sound/SoundFixture.h"

namespace {

namespace fs = std::filesystem;

auto threads() {
    const fs::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
}

// Returns true if this process has `count` threads within 10 s. Runs the main loop meanwhile,
// because it starts and stops the thread. The kernel may still list a joined thread for a moment.
bool threadsBecome(std::ptrdiff_t count) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (threads() != count && std::chrono::steady_clock::now() < deadline) {
        ecore_main_loop_iterate();
    }
    return threads() == count;
}

struct Call {
    std::thread::id thread = {};
    sound_tv_output_route_e route = SOUND_TV_OUTPUT_ROUTE_SPEAKER;
    int count = 0;
};

void record(sound_tv_output_route_e route, void* data) {
    auto& call = *static_cast<Call*>(data);
    call = {std::this_thread::get_id(), route, call.count + 1};
    ecore_main_loop_quit();
}

void recordAndUnset(sound_tv_output_route_e route, void* data) {
    record(route, data);
    sound_manager_unset_speaker_changed_cb();
}

class SpeakerCallbackTest : public SoundFixture {
protected:
    SpeakerCallbackTest() {
        unsetenv("PULSE_SERVER");
        for (const auto& [name, value] : beside({}).environment) {
            setenv(name.c_str(), value.c_str(), 1);
        }
    }

    ~SpeakerCallbackTest() override { sound_manager_unset_speaker_changed_cb(); }

    // Initializes Ecore once for all tests and removes its SIGCHLD handler. The handler is not
    // safe, and the tests start many child processes.
    static void startMainLoop() {
        if (!mainLoopStarted) {
            ASSERT_GT(ecore_init(), 0);
            mainLoopStarted = true;
            signal(SIGCHLD, SIG_DFL);
        }
    }

    static void TearDownTestSuite() {
        if (mainLoopStarted) {
            ecore_shutdown();
        }
    }

    static inline bool mainLoopStarted = false;

    // Changes the default sink and runs the main loop, repeatedly, until the callback has been
    // called or 20 s have passed.
    void changeSinksUntilCalled(const Call& call) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        for (int i = 0; call.count == 0 && std::chrono::steady_clock::now() < deadline; ++i) {
            makeDefault(i % 2 == 0 ? "bt_headset" : "tv_speaker");
            const auto onTime = [](void*) -> Eina_Bool {
                ecore_main_loop_quit();
                return ECORE_CALLBACK_CANCEL;
            };
            Ecore_Timer* const limit = ecore_timer_add(0.1, onTime, nullptr);
            ecore_main_loop_begin();
            if (call.count != 0) {
                ecore_timer_del(limit);
            }
        }
    }
};

// Must be the first test of the program, because the others initialize the main loop.
TEST_F(SpeakerCallbackTest, StartsNothingWithoutAMainLoop) {
    const auto before = threads();
    Call call;
    EXPECT_EQ(sound_manager_set_speaker_changed_cb(&record, &call), 0);
    EXPECT_EQ(threads(), before);
    EXPECT_EQ(sound_manager_unset_speaker_changed_cb(), 0);
}

TEST_F(SpeakerCallbackTest, IsCalledOnTheMainThreadFromWhicheverThreadItWasSet) {
    startServer();
    startMainLoop();
    Call call;
    std::thread([&] { sound_manager_set_speaker_changed_cb(&record, &call); }).join();
    changeSinksUntilCalled(call);
    EXPECT_GE(call.count, 1);
    EXPECT_EQ(call.thread, std::this_thread::get_id());
    EXPECT_EQ(call.route, SOUND_TV_OUTPUT_ROUTE_SPEAKER);
    sound_manager_unset_speaker_changed_cb();
}

TEST_F(SpeakerCallbackTest, MayUnsetItself) {
    startServer();
    startMainLoop();
    const auto before = threads();
    Call call;
    sound_manager_set_speaker_changed_cb(&recordAndUnset, &call);
    EXPECT_TRUE(threadsBecome(before + 1));
    changeSinksUntilCalled(call);
    EXPECT_EQ(call.count, 1);
    EXPECT_TRUE(threadsBecome(before));
}

TEST_F(SpeakerCallbackTest, MayBeSetAndUnsetByManyThreads) {
    startServer();
    startMainLoop();
    const auto before = threads();
    Call call;
    std::vector<std::thread> running;
    for (int i = 0; i < 4; ++i) {
        running.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                sound_manager_set_speaker_changed_cb(&record, &call);
                sound_manager_unset_speaker_changed_cb();
            }
        });
    }
    for (auto& thread : running) {
        thread.join();
    }
    EXPECT_TRUE(threadsBecome(before));
    sound_manager_set_speaker_changed_cb(&record, &call);
    EXPECT_TRUE(threadsBecome(before + 1));
    sound_manager_unset_speaker_changed_cb();
    EXPECT_TRUE(threadsBecome(before));
}

}  // namespace
