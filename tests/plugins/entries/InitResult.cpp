// A plugin that only returns INIT_RESULT from PLUGIN_INIT.
#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void* handle) {
    say(handle == nullptr ? "init without a broker" : "init");
    return INIT_RESULT;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
