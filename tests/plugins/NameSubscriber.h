// Entry points of a plugin that subscribes to the adapter's name and does everything else in its
// callback.
#pragma once

#include "tests/plugins/Fixture.h"

namespace {

void onName(char* name, void*);

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->BtAdapterSetNameChangedCb(&onName, nullptr);
}

void PLUGIN_DEINIT() {
    broker->BtAdapterUnsetNameChangedCb();
}
