// Measures how many bytes of heap the process has in use, also under a sanitizer.
#pragma once

#include <malloc.h>

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// A function of the sanitizers' allocator. It is declared here because g++ lacks its header.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
inline std::size_t heapInUse() {
    return __sanitizer_get_current_allocated_bytes();
}
#else
inline std::size_t heapInUse() {
    return mallinfo2().uordblks;
}
#endif
