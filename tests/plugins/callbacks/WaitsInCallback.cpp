// A plugin that waits at the gate in its callback for the event number EVENT of three. If
// OPENS_GATE its deinit entry, when it has unsubscribed, opens the gate, and its callback is slow.
#include <IRequestBroker.h>

#include <chrono>
#include <thread>

#include "tests/plugins/Fixture.h"

namespace {

void onState(int, bt_adapter_state_e, void*) {
    waitAtGate();
    if (OPENS_GATE) {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        say("ends at last");
    }
}

void onName(char*, void*) {
    waitAtGate();
}

void onTooMany(int, char*, void*) {
    waitAtGate();
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    switch (EVENT) {
        case 1:
            return broker->BtAdapterSetStateChangedCb(&onState, nullptr);
        case 2:
            return broker->BtAdapterSetNameChangedCb(&onName, nullptr);
        default:
            return broker->BtAdapterSetMaxDeviceConnectedCb(&onTooMany, nullptr);
    }
}

void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
    broker->BtAdapterUnsetNameChangedCb();
    broker->BtAdapterUnsetMaxDeviceConnectedCb();
    if (OPENS_GATE) {
        openGate();
    }
}
