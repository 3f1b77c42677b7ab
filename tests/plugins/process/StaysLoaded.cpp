// A plugin that opens its own library again and never closes it, so that it stays loaded.
#include <dlfcn.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    Dl_info library{};
    dladdr(&broker, &library);
    return dlopen(library.dli_fname, RTLD_LAZY) == nullptr ? -1 : 0;
}

void PLUGIN_DEINIT() {}
