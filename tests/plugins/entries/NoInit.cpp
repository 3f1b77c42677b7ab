// A library without an init entry.
#include "tests/plugins/Fixture.h"

void PLUGIN_DEINIT() {
    say("deinit");
}
