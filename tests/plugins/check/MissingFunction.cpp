// Calls a function that no library has; the loader finds out at the first call.
#include "tests/plugins/check/Subscriber.h"

void functionThatIsMissing(int);

namespace {

void onName(char*, void*) {
    functionThatIsMissing(1);
}

}  // namespace
