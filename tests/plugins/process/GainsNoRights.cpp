// Succeeds only where no program that it starts gets rights of its own.
#include <sys/prctl.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    return prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1 ? 0 : -1;
}

void PLUGIN_DEINIT() {}
