// A plugin that uses a variable nobody has, which the loader misses when it opens the library.
#include "tests/plugins/Fixture.h"

extern int variableOfNoLibrary;

int PLUGIN_INIT(void*) {
    say("unreachable");
    return variableOfNoLibrary;
}
