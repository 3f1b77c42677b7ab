// A plugin without PLUGIN_DEINIT.
#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    say("init");
    return 0;
}
