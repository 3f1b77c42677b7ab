// Entry points of a plugin that subscribes to changes of the adapter's state. The source that
// includes this header defines the callback onState().
#pragma once

#include "tests/plugins/Fixture.h"

namespace {

void onState(int, bt_adapter_state_e, void*);

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->BtAdapterSetStateChangedCb(&onState, nullptr);
}

void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
    say("deinit");
}
