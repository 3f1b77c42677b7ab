// A plugin whose PLUGIN_INIT fails while a task waits at the gate and the queue is full. The
// termination of the task context therefore finds no room. The library is linked with nodelete, so
// that it stays mapped for that task.
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
