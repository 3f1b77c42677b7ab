// A plugin whose callback requests POSTS tasks, which run after the callback has returned. The last
// task that the queue has room for requests one more.
#include <IRequestBroker.h>

#include <algorithm>

#include "tests/plugins/Fixture.h"

namespace {

void work(int number) {
    say("task %d", number);
    if (number == std::min(POSTS, 10)) {
        broker->RequestToInvokeInTaskExecutor([](void*) { say("one more task"); }, nullptr);
    }
}

void onState(int, bt_adapter_state_e, void*) {
    say("callback begins");
    for (int i = 1; i <= POSTS; ++i) {
        broker->RequestToInvokeInTaskExecutor([i](void*) { work(i); }, nullptr);
    }
    say("callback ends");
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->BtAdapterSetStateChangedCb(&onState, nullptr);
}

void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
}
