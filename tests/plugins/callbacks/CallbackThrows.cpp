// A plugin that subscribes to the adapter's state and throws THROWN in its callback.
#include <IRequestBroker.h>

#include <stdexcept>

#include "tests/plugins/Fixture.h"
#include "tests/plugins/OwnException.h"

namespace {

void onState(int, bt_adapter_state_e, void*) {
    say("throws");
    throw THROWN;
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    return static_cast<IRequestBroker*>(handle)->BtAdapterSetStateChangedCb(&onState, nullptr);
}

void PLUGIN_DEINIT() {
    say("deinit");
}
