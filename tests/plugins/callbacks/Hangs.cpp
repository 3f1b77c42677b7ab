// A callback never returns.
#include <unistd.h>

#include "tests/plugins/check/Subscriber.h"

namespace {

void onName(char*, void*) {
    while (true) {
        pause();
    }
}

}  // namespace
