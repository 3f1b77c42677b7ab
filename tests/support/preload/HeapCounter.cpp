// Preloaded into a program: counts the blocks and bytes that the program has allocated and not
// freed. Blocks of the size that threads keep for tasks are counted separately. The signal
// SIGRTMIN + 5 makes it write the sums to the standard error. A header in front of each block
// contains its size.
#include <errno.h>
#include <malloc.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "taskExecutor/ShortLived.h"

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

struct alignas(std::max_align_t) Header {
    std::size_t size;
    std::size_t offset;  // of the block in the C library's block
};

std::atomic<long> g_blocks = 0;
std::atomic<long> g_bytes = 0;
std::atomic<long> g_taskBlocks = 0;

Header* headerOf(void* block) {
    return static_cast<Header*>(block) - 1;
}

void count(long blocks, std::size_t bytes) {
    if (bytes == ShortLived::BLOCK_SIZE) {
        g_taskBlocks += blocks;
        return;
    }
    g_blocks += blocks;
    g_bytes += blocks * static_cast<long>(bytes);
}

void* begin(void* given, std::size_t offset, std::size_t size) {
    if (given == nullptr) {
        return nullptr;
    }
    void* const block = static_cast<char*>(given) + offset;
    *headerOf(block) = {size, offset};
    count(1, size);
    return block;
}

bool isTooMuch(std::size_t size, std::size_t more) {
    if (size <= PTRDIFF_MAX - more) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

void report(int) {
    const int error = errno;
    char line[80] = "heap in use: ";
    char* const end = line + sizeof line - 1;
    const auto append = [end](char* to, const char* text) {
        return std::copy(text, text + std::min<std::ptrdiff_t>(std::strlen(text), end - to), to);
    };
    char* to = std::to_chars(line + std::strlen(line), end, g_bytes.load()).ptr;
    to = std::to_chars(append(to, " bytes in "), end, g_blocks.load()).ptr;
    to = std::to_chars(append(to, " blocks, for tasks "), end, g_taskBlocks.load()).ptr;
    to = append(to, "\n");
    static_cast<void>(!write(2, line, static_cast<std::size_t>(to - line)));
    errno = error;
}

__attribute__((constructor)) void listen() {
    struct sigaction action {};
    action.sa_handler = report;
    action.sa_flags = SA_RESTART;
    sigaction(SIGRTMIN + 5, &action, nullptr);
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) noexcept {
    return isTooMuch(size, sizeof(Header))
               ? nullptr
               : begin(__libc_malloc(size + sizeof(Header)), sizeof(Header), size);
}

void free(void* block) noexcept {
    if (block != nullptr) {
        count(-1, headerOf(block)->size);
        __libc_free(static_cast<char*>(block) - headerOf(block)->offset);
    }
}

void* calloc(std::size_t number, std::size_t size) noexcept {
    std::size_t all = 0;
    if (__builtin_mul_overflow(number, size, &all)) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const block = malloc(all);
    return block == nullptr ? nullptr : std::memset(block, 0, all);
}

void* realloc(void* block, std::size_t size) noexcept {
    if (block == nullptr) {
        return malloc(size);
    }
    if (size == 0) {
        free(block);
        return nullptr;
    }
    void* const moved = malloc(size);
    if (moved != nullptr) {
        std::memcpy(moved, block, std::min(size, headerOf(block)->size));
        free(block);
    }
    return moved;
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    const std::size_t offset = std::max(alignment, sizeof(Header));
    return isTooMuch(size, offset) ? nullptr
                                   : begin(__libc_memalign(offset, size + offset), offset, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    *block = memalign(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}

void* valloc(std::size_t size) noexcept {
    return memalign(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), size);
}

std::size_t malloc_usable_size(void* block) noexcept {
    return block == nullptr ? 0 : headerOf(block)->size;
}

}  // extern "C"
