// A plugin that allocates more memory than `corvane check` allows.
#include <array>
#include <cstddef>
#include <new>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    constexpr std::size_t gibibyte = 1 << 30;
    std::array<void*, 3> blocks;
    for (void*& block : blocks) {
        block = ::operator new(gibibyte);
    }
    for (void* const block : blocks) {
        ::operator delete(block);
    }
    return 0;
}

void PLUGIN_DEINIT() {}
