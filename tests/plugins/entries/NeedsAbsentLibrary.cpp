// A plugin that needs a library which isn't there.
#include "tests/plugins/Fixture.h"

int functionOfAnAbsentLibrary();

int PLUGIN_INIT(void*) {
    say("unreachable");
    return functionOfAnAbsentLibrary();
}
