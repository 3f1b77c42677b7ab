// A plugin that subscribes to the adapter's state and throws THROWN in its callback.
#include <IRequestBroker.h>

#include <stdexcept>

#include "tests/plugins/Fixture.h"

namespace {

void onState(int, bt_adapter_state_e, void*) {
    say("throws");
    throw THROWN;
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->BtAdapterSetStateChangedCb(&onState, nullptr);
}

void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
    say("deinit");
}
