// Memory for tasks and jobs: each thread keeps the blocks that it frees, up to a fixed number, for
// its next allocations. AddressSanitizer reports the use of a kept block like that of freed memory.
#pragma once

#include <array>
#include <cstddef>
#include <new>

#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#else  // a device's compiler may come without it
#define ASAN_POISON_MEMORY_REGION(address, size)
#define ASAN_UNPOISON_MEMORY_REGION(address, size)
#endif

/// A base of short-lived objects. Deleting one through a base needs a virtual destructor, because
/// the size tells where its memory came from. Threads: any. Errors: std::bad_alloc.
class ShortLived {
public:
    static constexpr std::size_t BLOCK_SIZE = 112;  // a job, or a task with three strings
    static constexpr std::size_t CAPACITY = 16;     // blocks kept by a thread

    static void* operator new(std::size_t size) {
        if (size > BLOCK_SIZE || t_count == 0) {
            return ::operator new(size > BLOCK_SIZE ? size : BLOCK_SIZE);
        }
        return take();
    }
    static void operator delete(void* memory, std::size_t size) noexcept {
        if (size > BLOCK_SIZE || t_count == t_capacity) {
            ::operator delete(memory);
            return;
        }
        static thread_local const ThreadEnd atThreadEnd;
        ASAN_POISON_MEMORY_REGION(memory, BLOCK_SIZE);
        t_blocks[t_count++] = memory;
    }

    /// Frees the blocks that the calling thread keeps; it keeps none from then on.
    static void stopKeeping() noexcept {
        for (t_capacity = 0; t_count > 0;) {
            ::operator delete(take());
        }
    }

private:
    struct ThreadEnd {
        ~ThreadEnd() { stopKeeping(); }
    };
    static void* take() {
        void* const block = t_blocks[--t_count];
        ASAN_UNPOISON_MEMORY_REGION(block, BLOCK_SIZE);
        return block;
    }

    // Trivially destructible: objects may still be deleted after ThreadEnd.
    static inline constinit thread_local std::array<void*, CAPACITY> t_blocks{};
    static inline constinit thread_local std::size_t t_count = 0;
    static inline constinit thread_local std::size_t t_capacity = CAPACITY;
};
