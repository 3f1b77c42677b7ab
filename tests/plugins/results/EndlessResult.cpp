// A plugin that writes an endless line to the result pipe of `corvane check`.
#include <unistd.h>

#include <string>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    const std::string text(60000, 'x');
    while (write(3, text.data(), text.size()) > 0) {
    }
    return 0;
}

void PLUGIN_DEINIT() {}
