// The smallest complete plugin: one subscription, one request for its own work, and both entry
// points. It counts how often the adapter was switched on.
#include <IRequestBroker.h>
#include <dlog.h>

#define PLUGIN_ENTRY extern "C" __attribute__((visibility("default")))

namespace {

constexpr const char* TAG = "ADAPTER_WATCH";

IRequestBroker* g_broker = nullptr;

// Only callbacks and requested work use it. Both run in this plugin's task context, one at a time,
// so it needs no lock, whichever thread runs them.
int g_timesOn = 0;

void onAdapterState(int, bt_adapter_state_e state, void*) {
    if (state == BT_ADAPTER_STATE_ON) {
        ++g_timesOn;
    }
    dlog_print(DLOG_PRIORITY_INFO, TAG, "the adapter is %s; switched on %d times so far",
               state == BT_ADAPTER_STATE_ON ? "on" : "off", g_timesOn);
}

}  // namespace

PLUGIN_ENTRY int PLUGIN_INIT(void* broker) {
    g_broker = static_cast<IRequestBroker*>(broker);
    g_broker->BtAdapterSetStateChangedCb(onAdapterState, nullptr);
    return 0;
}

PLUGIN_ENTRY void PLUGIN_DEINIT() {
    g_broker->BtAdapterUnsetStateChangedCb();
    g_broker->RequestToInvokeInTaskExecutor(
        [](void*) {
            dlog_print(DLOG_PRIORITY_INFO, TAG, "the adapter was switched on %d times", g_timesOn);
        },
        nullptr);
}
