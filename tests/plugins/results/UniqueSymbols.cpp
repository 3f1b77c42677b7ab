// A plugin that exports the static variable of a template. With g++ the symbol is unique in the
// process (STB_GNU_UNIQUE), and the loader never unloads the library.
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
