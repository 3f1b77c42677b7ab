// A plugin that throws an exception with a text longer than a result of `corvane check` may be.
#include <stdexcept>
#include <string>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    throw std::runtime_error(std::string(100000, '\001'));
}

void PLUGIN_DEINIT() {}
