// A plugin that subscribes to an event, initialises a shared profile and requests a task.
#include <IRequestBroker.h>

#include <array>

#include "tests/daemon/allocation/PluginCounts.h"

namespace {

IRequestBroker* broker = nullptr;

void onState(int, bt_adapter_state_e, void*) {}
void onConnection(int, bool, const char*, void*) {}

}  // namespace

extern "C" int PLUGIN_INIT(void* handle) {
    broker = static_cast<IRequestBroker*>(handle);
    broker->BtAdapterSetStateChangedCb(onState, nullptr);
    broker->BtHidHostInitialize(onConnection, nullptr);
    broker->RequestToInvokeInTaskExecutor(
        [filler = std::array<char, 64>{}](void*) { pluginCounts.jobs += 1 + filler[0]; }, nullptr);
    ++pluginCounts.started;
    return 0;
}

extern "C" void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetStateChangedCb();
    broker->BtHidHostDeinitialize();
    ++pluginCounts.stopped;
}
