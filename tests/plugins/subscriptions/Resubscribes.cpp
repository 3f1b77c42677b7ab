// A plugin that unsubscribes in its callback and subscribes again at once.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

namespace {

void onState(int, bt_adapter_state_e state, void*) {
    say("state %d", static_cast<int>(state));
    say("unsubscribe returned %d", broker->BtAdapterUnsetStateChangedCb());
    say("subscribe returned %d", broker->BtAdapterSetStateChangedCb(&onState, nullptr));
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    say("subscribe returned %d", broker->BtAdapterSetStateChangedCb(&onState, nullptr));
    return 0;
}

void PLUGIN_DEINIT() {
    say("unsubscribe returned %d", broker->BtAdapterUnsetStateChangedCb());
}
