// The plugin's side of every benchmark: it counts the events it receives.
#pragma once

#include <bluetooth.h>

struct Subscriber {
    long events = 0;

    static void onState(int, bt_adapter_state_e, void* self) {
        ++static_cast<Subscriber*>(self)->events;
    }
    static void onBond(int, bt_device_info_s* info, void* self) {
        static_cast<Subscriber*>(self)->events += info->remote_name != nullptr ? 1 : 0;
    }
};
