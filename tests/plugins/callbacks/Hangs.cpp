// A plugin whose callback never returns.
#include <unistd.h>

#include "tests/plugins/NameSubscriber.h"

namespace {

void onName(char*, void*) {
    while (true) {
        pause();
    }
}

}  // namespace
