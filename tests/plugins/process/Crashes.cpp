// A plugin whose callback writes to an unmapped address.
#include "tests/plugins/NameSubscriber.h"

namespace {

int* volatile nowhere = reinterpret_cast<int*>(8);

__attribute__((noinline, no_sanitize("address", "thread", "undefined"))) void writeNowhere() {
    *nowhere = 1;
}

void onName(char*, void*) {
    writeNowhere();
    nowhere = nullptr;  // prevents a tail call, so that onName stays in the backtrace
}

}  // namespace
