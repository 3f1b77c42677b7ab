// A plugin whose callback overflows the stack.
#include <cstring>

#include "tests/plugins/NameSubscriber.h"

namespace {

volatile bool goesOn = true;

__attribute__((noinline)) int descend(char* above) {
    char here[4096];
    std::memset(here, above == nullptr ? 0 : above[0], sizeof here);
    return goesOn ? descend(here) + here[1] : here[0];
}

void onName(char* name, void*) {
    descend(name);
}

}  // namespace
