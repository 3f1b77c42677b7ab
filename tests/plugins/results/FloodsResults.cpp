// Writes to the descriptor of the check's results without end, as many lines as fit.
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
