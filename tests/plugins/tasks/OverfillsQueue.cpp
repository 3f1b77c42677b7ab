// A job queues more jobs than there is room for, again and again.
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
