// A plugin whose PLUGIN_INIT throws THROWN.
#include <stdexcept>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    say("init");
    throw THROWN;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
