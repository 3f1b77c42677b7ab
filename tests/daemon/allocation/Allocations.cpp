#include "tests/daemon/allocation/Allocations.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

namespace {

constexpr std::size_t SIZES = 512;
constexpr std::size_t STRINGS = 64;

std::atomic<bool> g_counting = false;
std::atomic<long> g_made = 0;
std::atomic<bool> g_hasFailed = false;
long g_failAt = 0;
bool g_fromThenOn = false;

std::atomic<long> g_blocks = 0;
std::array<std::atomic<long>, SIZES> g_blocksOfSize{};
std::array<std::atomic<void*>, STRINGS> g_strings{};
std::atomic<long> g_stringsMade = 0;

thread_local const std::function<void()>* t_beforeNext = nullptr;

bool mayAllocate() {
    if (const auto* const function = std::exchange(t_beforeNext, nullptr)) {
        (*function)();
    }
    if (!g_counting) {
        return true;
    }
    const long number = ++g_made;
    if (number == g_failAt || (g_fromThenOn && number > g_failAt)) {
        g_hasFailed = true;
        return false;
    }
    return true;
}

// Returns the length of a block's prefix, which holds the size and keeps the block aligned.
std::size_t prefixOf(std::size_t alignment) {
    return std::max(alignment, alignof(std::max_align_t));
}

void* allocate(std::size_t size, std::size_t alignment) noexcept {
    if (!mayAllocate()) {
        return nullptr;
    }
    const std::size_t prefix = prefixOf(alignment);
    const std::size_t whole = (prefix + size + prefix - 1) / prefix * prefix;
    auto* const start = static_cast<char*>(std::aligned_alloc(prefix, whole));
    if (start == nullptr) {
        return nullptr;
    }
    std::memcpy(start, &size, sizeof size);
    ++g_blocks;
    if (size < SIZES) {
        ++g_blocksOfSize[size];
    }
    return start + prefix;
}

void* allocateOrThrow(std::size_t size, std::size_t alignment) {
    void* const block = allocate(size, alignment);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void release(void* block, std::size_t alignment) noexcept {
    if (block == nullptr) {
        return;
    }
    char* const start = static_cast<char*>(block) - prefixOf(alignment);
    std::size_t size;
    std::memcpy(&size, start, sizeof size);
    --g_blocks;
    if (size < SIZES) {
        --g_blocksOfSize[size];
    }
    std::free(start);
}

}  // namespace

namespace allocations {

void failAt(long number, Failing failing) {
    g_failAt = number;
    g_fromThenOn = failing == Failing::FromThenOn;
    g_made = 0;
    g_hasFailed = false;
    g_counting = true;
}

void succeed() {
    g_counting = false;
}

long made() {
    return g_made;
}

bool hasFailed() {
    return g_hasFailed;
}

void beforeNext(const std::function<void()>& function) {
    t_beforeNext = &function;
}

long outstandingBlocks() {
    return g_blocks;
}

long outstandingBlocks(std::size_t size) {
    return g_blocksOfSize.at(size);
}

long outstandingStrings() {
    return std::count_if(g_strings.begin(), g_strings.end(),
                         [](const auto& string) { return string != nullptr; });
}

long stringsMade() {
    return g_stringsMade;
}

}  // namespace allocations

extern "C" {
// NOLINTBEGIN: the linker's names
char* __real_strndup(const char* text, std::size_t size);
void __real_free(void* block);

char* __wrap_strndup(const char* text, std::size_t size) {
    if (!mayAllocate()) {
        errno = ENOMEM;
        return nullptr;
    }
    char* const copy = __real_strndup(text, size);
    ++g_stringsMade;
    for (auto& string : g_strings) {
        void* none = nullptr;
        if (string.compare_exchange_strong(none, copy)) {
            return copy;
        }
    }
    std::abort();  // no scenario has so many strings
}

void __wrap_free(void* block) {
    if (block != nullptr) {
        for (auto& string : g_strings) {
            void* same = block;
            if (string.compare_exchange_strong(same, nullptr)) {
                break;
            }
        }
    }
    __real_free(block);
}
// NOLINTEND
}

void* operator new(std::size_t size) {
    return allocateOrThrow(size, 0);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size, 0);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return allocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, 0);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, 0);
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
    release(block, 0);
}
void operator delete[](void* block) noexcept {
    release(block, 0);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block, 0);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block, 0);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    release(block, 0);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    release(block, 0);
}
void operator delete(void* block, std::align_val_t alignment) noexcept {
    release(block, static_cast<std::size_t>(alignment));
}
void operator delete[](void* block, std::align_val_t alignment) noexcept {
    release(block, static_cast<std::size_t>(alignment));
}
void operator delete(void* block, std::size_t, std::align_val_t alignment) noexcept {
    release(block, static_cast<std::size_t>(alignment));
}
void operator delete[](void* block, std::size_t, std::align_val_t alignment) noexcept {
    release(block, static_cast<std::size_t>(alignment));
}
void operator delete(void* block, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    release(block, static_cast<std::size_t>(alignment));
}
void operator delete[](void* block, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    release(block, static_cast<std::size_t>(alignment));
}
