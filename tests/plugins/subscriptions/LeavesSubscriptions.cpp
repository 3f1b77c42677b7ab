// A plugin that subscribes to the adapter's state in PLUGIN_INIT, which returns INIT_RESULT, and
// never unsubscribes.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

namespace {

void onState(int, bt_adapter_state_e, void*) {
    say("state changed");
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    static_cast<IRequestBroker*>(handle)->BtAdapterSetStateChangedCb(&onState, nullptr);
    say("init");
    return INIT_RESULT;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
