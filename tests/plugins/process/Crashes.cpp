// Writes to where nothing is.
#include "tests/plugins/NameSubscriber.h"

namespace {

int* volatile nowhere = reinterpret_cast<int*>(8);

__attribute__((noinline, no_sanitize_address, no_sanitize_thread, no_sanitize_undefined)) void
writeNowhere() {
    *nowhere = 1;
}

void onName(char*, void*) {
    writeNowhere();
    nowhere = nullptr;  // the call before isn't the last, so that this function stays a frame
}

}  // namespace
