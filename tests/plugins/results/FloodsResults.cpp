// A plugin that writes valid lines to the result pipe of `corvane check` without end.
#include <unistd.h>

#include <string>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    std::string lines;
    while (lines.size() < 60000) {
        lines += "{\"step\":\"a flood\",\"thread\":1}\n";
    }
    while (write(3, lines.data(), lines.size()) > 0) {
    }
    return 0;
}

void PLUGIN_DEINIT() {}
