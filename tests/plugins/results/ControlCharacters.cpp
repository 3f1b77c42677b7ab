// A plugin that logs and throws text with control characters, which a terminal would obey.
#include <iostream>
#include <stdexcept>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    std::cerr << "logged \033]0;title\007\377\n";
    throw std::runtime_error("gr\303\274n \033[31m\177 \302\233 \342\200\256 \377 line\r\nnext");
}

void PLUGIN_DEINIT() {}
