// A plugin whose callback for the adapter's state throws THROWN.
#include <stdexcept>

#include "tests/plugins/StateSubscriber.h"

namespace {

void onState(int, bt_adapter_state_e, void*) {
    say("throws");
    throw THROWN;
}

}  // namespace
