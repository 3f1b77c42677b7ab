// Ends the process.
#include <unistd.h>

#include "tests/plugins/check/Subscriber.h"

namespace {

void onName(char*, void*) {
    _exit(3);
}

}  // namespace
