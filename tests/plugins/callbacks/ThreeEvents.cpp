// A plugin that subscribes to three events. Its callback for the first one waits at the gate.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

namespace {

void onState(int, bt_adapter_state_e state, void*) {
    say("state %d", static_cast<int>(state));
    waitAtGate();
}

void onName(char* name, void*) {
    say("name %s", name);
}

void onTooMany(int, char*, void*) {
    say("too many devices");
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    broker->BtAdapterSetStateChangedCb(&onState, nullptr);
    broker->BtAdapterSetNameChangedCb(&onName, nullptr);
    broker->BtAdapterSetMaxDeviceConnectedCb(&onTooMany, nullptr);
    return 0;
}

void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
    broker->BtAdapterUnsetNameChangedCb();
    broker->BtAdapterUnsetMaxDeviceConnectedCb();
}
