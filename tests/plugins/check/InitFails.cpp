// PLUGIN_INIT says that it failed.
#include "tests/plugins/check/Fixture.h"

int PLUGIN_INIT(void*) {
    return -3;
}

void PLUGIN_DEINIT() {}
