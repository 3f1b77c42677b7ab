// A plugin that does nothing but return INIT_RESULT from its init entry.
#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void* handle) {
    say(handle == nullptr ? "init without a broker" : "init");
    return INIT_RESULT;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
