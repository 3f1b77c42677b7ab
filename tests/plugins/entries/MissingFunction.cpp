// A plugin that calls a function that no library defines. If IN_CALLBACK is true, its callback for
// the adapter's state calls it, otherwise PLUGIN_INIT. Lazy binding: the loader looks for the
// function only when it is called.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

void functionOfNoLibrary();

namespace {

void onState(int, bt_adapter_state_e, void*) {
    say("calls a function of no library");
    functionOfNoLibrary();
    say("unreachable");
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    say("init");
    if (IN_CALLBACK) {
        return static_cast<IRequestBroker*>(handle)->BtAdapterSetStateChangedCb(&onState, nullptr);
    }
    onState(0, BT_ADAPTER_STATE_OFF, nullptr);
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
