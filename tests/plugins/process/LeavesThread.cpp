// A plugin that leaves a detached thread running.
#include <unistd.h>

#include <thread>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    std::thread([] {
        while (true) {
            pause();
        }
    }).detach();
    return 0;
}

void PLUGIN_DEINIT() {}
