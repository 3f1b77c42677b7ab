// There is no PLUGIN_INIT.
#include "tests/plugins/check/Fixture.h"

void PLUGIN_DEINIT() {}
