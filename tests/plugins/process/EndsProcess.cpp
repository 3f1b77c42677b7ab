// A plugin that ends the process by END. If IN_CALLBACK is true, its callback for the adapter's
// state does so, otherwise PLUGIN_INIT.
#include <IRequestBroker.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/plugins/Fixture.h"

namespace {

void onState(int, bt_adapter_state_e, void*) {
    say("ends the process");
    END;
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    if (IN_CALLBACK) {
        return static_cast<IRequestBroker*>(handle)->BtAdapterSetStateChangedCb(&onState, nullptr);
    }
    onState(0, BT_ADAPTER_STATE_OFF, nullptr);
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
