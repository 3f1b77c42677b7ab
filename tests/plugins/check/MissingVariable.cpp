// Reads a variable that no library has; the loader can't open the plugin.
#include "tests/plugins/check/Subscriber.h"

extern int variableThatIsMissing;

namespace {

volatile int seen = 0;

void onName(char*, void*) {
    seen = variableThatIsMissing;
}

}  // namespace
