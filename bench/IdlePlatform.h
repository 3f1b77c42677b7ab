// A platform that remembers the callbacks set, so that a benchmark can be the one who calls them.
#pragma once

#include <bluetooth.h>

namespace idle_platform {

/// The callback and its user data; one thread at a time sets, any may read meanwhile.
template <typename Callback>
struct Slot {
    Callback callback;
    void* userData;
};

Slot<bt_adapter_state_changed_cb> adapterState();
Slot<bt_device_bond_created_cb> bondCreated();

}  // namespace idle_platform
