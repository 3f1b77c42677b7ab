// A plugin that exports a function besides its entry points.
#include "tests/plugins/NameSubscriber.h"

__attribute__((visibility("default"))) void helperOfThePlugin() {}

namespace {

void onName(char*, void*) {
    helperOfThePlugin();
}

}  // namespace
