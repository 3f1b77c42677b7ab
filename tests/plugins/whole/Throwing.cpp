// A plugin whose callbacks fail.
#include <IRequestBroker.h>

#include <stdexcept>

namespace {

IRequestBroker* pluginBroker = nullptr;

}  // namespace

extern "C" int PLUGIN_INIT(void* broker) {
    pluginBroker = static_cast<IRequestBroker*>(broker);
    pluginBroker->BtAdapterSetStateChangedCb(
        [](int, bt_adapter_state_e, void*) { throw std::runtime_error("thrown by a plugin"); },
        nullptr);
    return 0;
}

extern "C" void PLUGIN_DEINIT() {
    pluginBroker->BtAdapterUnsetStateChangedCb();
}
