// Subscribes to one event twice.
#include "tests/plugins/check/Fixture.h"

namespace {

void onName(char*, void*) {}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    broker->BtAdapterSetNameChangedCb(&onName, nullptr);
    return broker->BtAdapterSetNameChangedCb(&onName, nullptr);
}

void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetNameChangedCb();
}
