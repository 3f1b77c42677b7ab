// Built with the headers of a daemon to come, which has one operation more.
#include "tests/plugins/Fixture.h"

[[gnu::section(".corvane.abi"), gnu::used]] static const int laterOperationCount =
    corvaneOperationCount + 1;

int PLUGIN_INIT(void*) {
    return 0;
}

void PLUGIN_DEINIT() {}
