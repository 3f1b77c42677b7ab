// A plugin that counts the changes of the adapter's state and logs a line at the hundredth.
#include <atomic>

#include "tests/plugins/StateSubscriber.h"

namespace {

std::atomic<int> count = 0;

void onState(int, bt_adapter_state_e, void*) {
    if (++count == 100) {
        say("a hundred events");
    }
}

}  // namespace
