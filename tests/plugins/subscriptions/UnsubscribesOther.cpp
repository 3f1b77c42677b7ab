// A plugin that unsubscribes from an event that it never subscribed to.
#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return 0;
}

void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
}
