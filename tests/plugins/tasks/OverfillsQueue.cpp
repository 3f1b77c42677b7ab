// A plugin whose task queues 100,000 tasks, far more than there is room for.
#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->RequestToInvokeInTaskExecutor(
        [](void*) {
            for (int i = 0; i < 100000; ++i) {
                broker->RequestToInvokeInTaskExecutor([](void*) {}, nullptr);
            }
        },
        nullptr);
}

void PLUGIN_DEINIT() {}
