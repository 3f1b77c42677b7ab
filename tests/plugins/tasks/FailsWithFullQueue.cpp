// A plugin that fails to start while one of its tasks waits at the gate and its queue is full, so
// that the end of its task context finds no room. Its library stays mapped for that task.
#include <IRequestBroker.h>

#include <future>
#include <thread>

#include "tests/plugins/Fixture.h"

namespace {

constexpr int CAPACITY = 10;

std::promise<void> isBlocked;

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    std::thread([] {
        broker->RequestToInvokeInTaskExecutor(
            [](void*) {
                isBlocked.set_value();
                waitAtGate();
            },
            nullptr);
        say("the runner has left");
    }).detach();
    isBlocked.get_future().wait();
    for (int i = 1; i <= CAPACITY; ++i) {
        broker->RequestToInvokeInTaskExecutor([i](void*) { say("task %d", i); }, nullptr);
    }
    return -1;
}

void PLUGIN_DEINIT() {}
