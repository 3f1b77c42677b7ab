// An exception leaves PLUGIN_DEINIT.
#include "tests/plugins/check/Fixture.h"

int PLUGIN_INIT(void*) {
    return 0;
}

void PLUGIN_DEINIT() {
    throw 3;
}
