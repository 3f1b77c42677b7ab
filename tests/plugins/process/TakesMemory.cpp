// A plugin that allocates more memory than `corvane check` allows.
#include <cstddef>
#include <new>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    constexpr std::size_t size = std::size_t{3} << 30;
    void* volatile memory = ::operator new(size);
    ::operator delete(memory);
    return 0;
}

void PLUGIN_DEINIT() {}
