// A plugin that uses a variable that no library defines; the loader refuses to open it.
#include "tests/plugins/Fixture.h"

extern int variableOfNoLibrary;

int PLUGIN_INIT(void*) {
    say("unreachable");
    return variableOfNoLibrary;
}

void PLUGIN_DEINIT() {}
