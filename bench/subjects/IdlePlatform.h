// A platform that stores the callbacks that are set, so that a benchmark can call them.
#pragma once

#include <bluetooth.h>

namespace idle_platform {

/// The callback and its user data. One thread at a time sets it; any thread may read it.
template <typename Callback>
struct Slot {
    Callback callback;
    void* userData;
};

Slot<bt_adapter_state_changed_cb> adapterState();
Slot<bt_device_bond_created_cb> bondCreated();

}  // namespace idle_platform
