// Entry points of a plugin that subscribes to changes of the adapter's name. The source that
// includes this header defines the callback onName().
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
