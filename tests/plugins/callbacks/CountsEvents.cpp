// A plugin that counts the changes of the adapter's state and says when there have been a hundred.
#include <IRequestBroker.h>

#include <atomic>

#include "tests/plugins/Fixture.h"

namespace {

IRequestBroker* broker = nullptr;
std::atomic<int> count = 0;

void onState(int, bt_adapter_state_e, void*) {
    if (++count == 100) {
        say("a hundred events");
    }
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    broker = static_cast<IRequestBroker*>(handle);
    return broker->BtAdapterSetStateChangedCb(&onState, nullptr);
}

void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
    say("deinit");
}
