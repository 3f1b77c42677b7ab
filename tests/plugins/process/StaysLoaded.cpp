// Keeps a handle of itself.
#include <dlfcn.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    Dl_info library{};
    dladdr(&broker, &library);
    return dlopen(library.dli_fname, RTLD_LAZY) == nullptr ? -1 : 0;
}

void PLUGIN_DEINIT() {}
