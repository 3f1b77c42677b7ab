// How many bytes of heap the process has in use, with any allocator.
#pragma once

#include <malloc.h>

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// Of the sanitizers' allocator; g++ comes without the header that declares it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
inline std::size_t heapInUse() {
    return __sanitizer_get_current_allocated_bytes();
}
#else
inline std::size_t heapInUse() {
    return mallinfo2().uordblks;
}
#endif
