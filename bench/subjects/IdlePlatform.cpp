#include "bench/subjects/IdlePlatform.h"

#include <bluetooth_tv.h>
#include <sound_manager_tv.h>
#include <system_info.h>

namespace {

// One slot for each callback, named after the function that sets it.
template <auto setFunction, typename Callback>
idle_platform::Slot<Callback> g_slot{};

}  // namespace

#define EVENT(source, type, value, subscribe, unsubscribe, setFunction, unsetFunction, Callback, \
              types)                                                                             \
    int setFunction(Callback callback, void* userData) {                                         \
        g_slot<&setFunction, Callback> = {callback, userData};                                   \
        return 0;                                                                                \
    }                                                                                            \
    int unsetFunction() {                                                                        \
        g_slot<&setFunction, Callback> = {};                                                     \
        return 0;                                                                                \
    }
#include "tests/support/EventTable.def"
#undef EVENT

int bt_product_init() {
    return 0;
}
int bt_product_deinit() {
    return 0;
}
int bt_audio_initialize() {
    return 0;
}
int bt_audio_deinitialize() {
    return 0;
}
int system_info_get_custom_int(const char*, int*) {
    return -1;
}

namespace idle_platform {

Slot<bt_adapter_state_changed_cb> adapterState() {
    return g_slot<&bt_adapter_set_state_changed_cb, bt_adapter_state_changed_cb>;
}

Slot<bt_device_bond_created_cb> bondCreated() {
    return g_slot<&bt_device_set_bond_created_cb, bt_device_bond_created_cb>;
}

}  // namespace idle_platform
