// A plugin that removes another one, which the daemon has found already, before that one's turn.
#include <unistd.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    say("unlink returned %d", unlink("plugins/libother.so"));
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
