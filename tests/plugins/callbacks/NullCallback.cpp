// A plugin that subscribes to the adapter's state with a null pointer as callback.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    say("subscribe returned %d", broker->BtAdapterSetStateChangedCb(nullptr, nullptr));
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
