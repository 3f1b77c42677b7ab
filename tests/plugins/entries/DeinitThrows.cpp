// A plugin whose PLUGIN_DEINIT throws THROWN.
#include <stdexcept>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    say("init");
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
    throw THROWN;
}
