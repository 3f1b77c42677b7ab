// A plugin with a static object whose constructor throws THROWN while the library is opened.
#include <stdexcept>

#include "tests/plugins/Fixture.h"

namespace {

struct Thrower {
    Thrower() {
        say("static constructor");
        throw THROWN;
    }
} const thrower;

}  // namespace

int PLUGIN_INIT(void*) {
    say("init");
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
