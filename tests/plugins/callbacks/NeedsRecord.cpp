// A plugin that aborts if an event has no record, which the interface allows.
#include <cstdlib>

#include "tests/plugins/BondSubscriber.h"

namespace {

void onBond(int, bt_device_info_s* info, void*) {
    if (info == nullptr) {
        std::abort();
    }
}

}  // namespace
