// A plugin whose callback aborts unless it runs on the main thread.
#include <unistd.h>

#include <cstdlib>

#include "tests/plugins/NameSubscriber.h"

namespace {

void onName(char*, void*) {
    if (gettid() != getpid()) {
        std::abort();
    }
}

}  // namespace
