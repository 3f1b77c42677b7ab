// Exports a function of its own.
#include "tests/plugins/NameSubscriber.h"

__attribute__((visibility("default"))) void helperOfThePlugin() {}

namespace {

void onName(char*, void*) {
    helperOfThePlugin();
}

}  // namespace
