// A library without PLUGIN_INIT.
#include "tests/plugins/Fixture.h"

void PLUGIN_DEINIT() {
    say("deinit");
}
