// A plugin whose PLUGIN_INIT succeeds only if no_new_privs is set, so that no program that it
// starts can gain privileges.
#include <sys/prctl.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    return prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1 ? 0 : -1;
}

void PLUGIN_DEINIT() {}
