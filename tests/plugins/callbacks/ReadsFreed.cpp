// A plugin that keeps a string which is valid only during the callback, and reads it in the next
// call. Memory checkers report that.
#include "tests/plugins/NameSubscriber.h"

namespace {

char* kept = nullptr;
volatile char seen = 0;

void onName(char* name, void*) {
    if (kept != nullptr) {
        seen = kept[0];
    }
    kept = name;
}

}  // namespace
