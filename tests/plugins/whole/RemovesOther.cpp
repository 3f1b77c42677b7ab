// A plugin that deletes another one's library, which the daemon has found but not loaded yet.
#include <unistd.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    say("unlink returned %d", unlink("plugins/libother.so"));
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
