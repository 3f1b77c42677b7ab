// A plugin whose task takes 300 ms.
#include <chrono>
#include <thread>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->RequestToInvokeInTaskExecutor(
        [](void*) { std::this_thread::sleep_for(std::chrono::milliseconds(300)); }, nullptr);
}

void PLUGIN_DEINIT() {}
