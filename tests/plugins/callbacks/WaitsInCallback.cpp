// A plugin that subscribes to the event number EVENT of three. Its callback waits at the gate.
// If OPENS_GATE is true, PLUGIN_DEINIT unsubscribes and then opens the gate, and the callback for
// event 1 takes 200 ms longer.
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
