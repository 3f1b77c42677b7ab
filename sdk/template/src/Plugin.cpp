// The plugin: its subscriptions and its callbacks.
#include <IRequestBroker.h>
#include <dlog.h>

namespace {

constexpr const char* TAG = "MY_PLUGIN";

IRequestBroker* broker = nullptr;

// May be called on any thread, but only one callback of the plugin runs at a time, so data that
// only callbacks use needs no lock. Pointer arguments are valid until the callback returns.
void onAdapterStateChanged(int, bt_adapter_state_e state, void*) {
    dlog_print(DLOG_PRIORITY_INFO, TAG, "the adapter is %s",
               state == BT_ADAPTER_STATE_ON ? "on" : "off");
}

}  // namespace

// The daemon calls this once after it has opened the library. A negative result means that the
// plugin can't run; it has to undo its subscriptions before it returns one.
extern "C" int PLUGIN_INIT(void* handle) {
    broker = static_cast<IRequestBroker*>(handle);
    broker->BtAdapterSetStateChangedCb(onAdapterStateChanged, nullptr);
    return 0;
}

// The daemon calls this once before it closes the library. It has to undo every subscription.
extern "C" void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
}
