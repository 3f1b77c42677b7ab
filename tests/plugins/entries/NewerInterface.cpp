// A plugin built as if with the headers of a later daemon, whose interface has one more operation.
#include "tests/plugins/Fixture.h"

[[gnu::section(".corvane.abi"), gnu::used]] static const int laterOperationCount =
    corvaneOperationCount + 1;

int PLUGIN_INIT(void*) {
    return 0;
}

void PLUGIN_DEINIT() {}
