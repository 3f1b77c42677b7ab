// A correct plugin whose task queues exactly as many tasks as there is room for.
#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->RequestToInvokeInTaskExecutor(
        [](void*) {
            for (int i = 0; i < 10; ++i) {
                broker->RequestToInvokeInTaskExecutor([](void*) {}, nullptr);
            }
        },
        nullptr);
}

void PLUGIN_DEINIT() {}
