// The plugin: what it subscribes to, and what it does then.
#include <IRequestBroker.h>
#include <dlog.h>

namespace {

constexpr const char* TAG = "MY_PLUGIN";

IRequestBroker* broker = nullptr;

// Called on any thread, but one call at a time for the whole plugin: what only callbacks
// touch needs no lock. Pointers among the arguments are good until the return.
void onAdapterStateChanged(int, bt_adapter_state_e state, void*) {
    dlog_print(DLOG_PRIORITY_INFO, TAG, "the adapter is %s",
               state == BT_ADAPTER_STATE_ON ? "on" : "off");
}

}  // namespace

// Called once when the daemon has opened the library. A negative result: the plugin can't
// run, and the daemon goes on without it; subscriptions must have been undone by then.
extern "C" int PLUGIN_INIT(void* handle) {
    broker = static_cast<IRequestBroker*>(handle);
    broker->BtAdapterSetStateChangedCb(onAdapterStateChanged, nullptr);
    return 0;
}

// Called once before the daemon closes the library: undoes every subscription.
extern "C" void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
}
