// Keeps what is lent for the call only. A memory checker sees it.
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
