// A plugin that needs a library which the loader does not find.
#include "tests/plugins/Fixture.h"

int functionOfAnAbsentLibrary();

int PLUGIN_INIT(void*) {
    say("unreachable");
    return functionOfAnAbsentLibrary();
}
