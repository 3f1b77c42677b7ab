// There is no PLUGIN_DEINIT.
#include "tests/plugins/check/Fixture.h"

int PLUGIN_INIT(void*) {
    return 0;
}
