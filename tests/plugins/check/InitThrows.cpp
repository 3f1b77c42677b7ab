// An exception leaves PLUGIN_INIT.
#include <stdexcept>

#include "tests/plugins/check/Fixture.h"

int PLUGIN_INIT(void*) {
    throw std::runtime_error("from PLUGIN_INIT");
}

void PLUGIN_DEINIT() {}
