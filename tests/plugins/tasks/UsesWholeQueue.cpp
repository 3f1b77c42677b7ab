// A job queues as many jobs as there is room for. Nothing is wrong.
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
