// A plugin that subscribes in its callback: to another event if OTHER_EVENT is true, otherwise to
// the same event again.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

namespace {

void onName(char* name, void*) {
    say("name %s", name);
}

void onStateAgain(int, bt_adapter_state_e state, void*) {
    say("state %d again", static_cast<int>(state));
}

void onState(int, bt_adapter_state_e state, void*) {
    say("state %d", static_cast<int>(state));
    say("subscribe returned %d", OTHER_EVENT
                                     ? broker->BtAdapterSetNameChangedCb(&onName, nullptr)
                                     : broker->BtAdapterSetStateChangedCb(&onStateAgain, nullptr));
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    say("subscribe returned %d", broker->BtAdapterSetStateChangedCb(&onState, nullptr));
    return 0;
}

void PLUGIN_DEINIT() {
    say("unsubscribe returned %d", broker->BtAdapterUnsetStateChangedCb());
    if (OTHER_EVENT) {
        say("unsubscribe returned %d", broker->BtAdapterUnsetNameChangedCb());
    }
}
