// Exports the static variable of a template, of which the loader keeps a single one.
#include "tests/plugins/NameSubscriber.h"

template <typename T>
struct __attribute__((visibility("default"))) Counter {
    static inline int count = 0;
};

namespace {

void onName(char*, void*) {
    ++Counter<int>::count;
}

}  // namespace
