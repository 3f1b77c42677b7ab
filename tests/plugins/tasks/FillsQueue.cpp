// A plugin whose thread runs a task that blocks while ten more are queued behind it. The request of
// an eleventh waits for room. If FREES_IN_TIME is true, the blocking task ends and makes room;
// otherwise the request times out.
#include <IRequestBroker.h>

#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>

#include "tests/plugins/Fixture.h"

namespace {

constexpr int CAPACITY = 10;
constexpr std::chrono::seconds PATIENCE{15};
constexpr std::chrono::seconds MOST_DELAY{10};  // allowed on a busy machine

std::promise<void> blocked;
std::promise<void> freed;
std::promise<void> eleventhQueued;

void request(std::function<void(void*)> work) {
    broker->RequestToInvokeInTaskExecutor(std::move(work), nullptr);
}

void block(void*) {
    say("blocks");
    blocked.set_value();
    freed.get_future().wait();
    say("goes on");
}

// The first queued task. Taking it from the queue makes room for the eleventh. It runs until the
// eleventh is queued, so that this thread remains the runner.
void first(void*) {
    if (FREES_IN_TIME) {
        eleventhQueued.get_future().wait();
    }
    say("task 1");
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    std::thread runner([] { request(&block); });
    blocked.get_future().wait();
    request(&first);
    for (int i = 2; i <= CAPACITY; ++i) {
        request([i](void*) { say("task %d", i); });
    }
    say("queued %d", CAPACITY);
    if (FREES_IN_TIME) {
        freed.set_value();
    }
    const auto start = std::chrono::steady_clock::now();
    try {
        request([](void*) { say("task 11"); });
        say("queued one more");
        eleventhQueued.set_value();
    } catch (const std::domain_error& error) {
        const auto time = std::chrono::steady_clock::now() - start;
        const bool inTime = time >= PATIENCE && time < PATIENCE + MOST_DELAY;
        say("eleventh: %s, %s", error.what(), inTime ? "after 15 s" : "at another time");
        freed.set_value();
    }
    runner.join();
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
