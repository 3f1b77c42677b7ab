// Entry points of a plugin that subscribes to new bonds. The source that includes this header
// defines the callback onBond().
#pragma once

#include "tests/plugins/Fixture.h"

namespace {

void onBond(int, bt_device_info_s* info, void*);

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->BtDeviceSetBondCreatedCb(&onBond, nullptr);
}

void PLUGIN_DEINIT() {
    broker->BtDeviceUnsetBondCreatedCb();
}
