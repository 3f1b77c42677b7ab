// Subscribes without a function.
#include "tests/plugins/check/Fixture.h"

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->BtAdapterSetNameChangedCb(nullptr, nullptr);
}

void PLUGIN_DEINIT() {}
