// A plugin that subscribes to the adapter's state and throws THROWN in its callback.
#include <stdexcept>

#include "tests/plugins/StateSubscriber.h"

namespace {

void onState(int, bt_adapter_state_e, void*) {
    say("throws");
    throw THROWN;
}

}  // namespace
