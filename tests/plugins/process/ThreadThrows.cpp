// A plugin that starts a thread which ends with an uncaught exception.
#include <stdexcept>
#include <thread>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    std::thread([] { throw std::runtime_error("from a thread"); }).join();
    return 0;
}

void PLUGIN_DEINIT() {}
