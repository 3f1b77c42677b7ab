// A plugin that subscribes to the adapter's state SUBSCRIPTIONS times. It unsubscribes in
// PLUGIN_DEINIT, and also in its callback if UNSUBSCRIBES_IN_CALLBACK is true.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

namespace {

char userData[SUBSCRIPTIONS];

void onState(int result, bt_adapter_state_e state, void* data) {
    const auto subscription = static_cast<char*>(data) - userData;
    say("subscription %d: result %d, state %d", static_cast<int>(subscription), result,
        static_cast<int>(state));
    if (UNSUBSCRIBES_IN_CALLBACK) {
        say("unsubscribe returned %d", broker->BtAdapterUnsetStateChangedCb());
    }
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    for (char& data : userData) {
        say("subscribe returned %d", broker->BtAdapterSetStateChangedCb(&onState, &data));
    }
    return 0;
}

void PLUGIN_DEINIT() {
    say("unsubscribe returned %d", broker->BtAdapterUnsetStateChangedCb());
}
