// A plugin that reads as many services as a device's record counts, without testing for the array.
#include "tests/plugins/BondSubscriber.h"

namespace {

void onBond(int, bt_device_info_s* info, void*) {
    for (int i = 0; info != nullptr && i < info->service_count; ++i) {
        say("service %s", info->service_uuid[i]);
    }
}

}  // namespace
