// A plugin without a deinit entry.
#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    say("init");
    return 0;
}
