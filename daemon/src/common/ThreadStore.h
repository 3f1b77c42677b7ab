// Memory that a delivery takes and gives back at once: each thread keeps a fixed amount of it, for
// its next delivery. What doesn't fit, and what there is too much of, comes from the heap.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <utility>

/// Blocks and strings of one thread, made when it first asks and freed when it has ended and the
/// last block has come back. A block may be given back on any thread; it goes home. A process that
/// has delivered on `n` threads holds `n` stores, however much it has delivered.
///
/// Threads: every thread uses its own. Errors: std::bad_alloc, if the heap has nothing either.
class ThreadStore {
public:
    static constexpr std::size_t BLOCKS = 16;
    static constexpr std::size_t BLOCK_SIZE = 112;  // a job, or a task with three strings
    static constexpr std::size_t STRINGS = 4;       // traced calls within one another
    static constexpr std::size_t STRING_SIZE = 255;

    static void* allocate(std::size_t size) {
        ThreadStore* const store = size <= BLOCK_SIZE ? own() : nullptr;
        Block* block = store == nullptr ? nullptr : store->take();
        if (block == nullptr) {
            block = new (::operator new(sizeof(Block) + size)) Block{};
        }
        return block + 1;
    }

    static void deallocate(void* memory) noexcept {
        Block* const block = static_cast<Block*>(memory) - 1;
        if (block->home == nullptr) {
            ::operator delete(block);
        } else if (block->home == s_own) {
            block->next = std::exchange(s_own->m_blocks, block);
        } else {
            block->home->giveBack(block);
        }
    }

    /// A string that says `text`; giveString takes it back.
    static std::string takeString(const char* text) {
        const std::size_t size = std::strlen(text);
        ThreadStore* const store = size <= STRING_SIZE ? own() : nullptr;
        if (store == nullptr || store->m_stringCount == 0) {
            return {text, size};
        }
        std::string result = std::move(store->m_strings[--store->m_stringCount]);
        result.assign(text, size);
        return result;
    }

    static void giveString(std::string&& string) noexcept {
        if (s_own != nullptr && s_own->m_stringCount < STRINGS &&
            string.capacity() == s_own->m_stringCapacity) {
            s_own->m_strings[s_own->m_stringCount++] = std::move(string);
        }
    }

    ThreadStore(const ThreadStore&) = delete;
    ThreadStore& operator=(const ThreadStore&) = delete;

private:
    // What stands in front of a block's memory.
    struct alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) Block {
        ThreadStore* home;  // null: the heap
        Block* next;
    };
    struct Place {
        Block block;
        std::array<std::byte, BLOCK_SIZE> memory;
    };

    // Of the thread. Its end closes the store; what runs later does without one.
    struct End {
        ThreadStore* store;
        ~End() {
            if (store != nullptr) {
                s_hasEnded = true;
                s_own = nullptr;
                store->close();
            }
        }
    };

    ThreadStore() {
        for (Place& place : m_places) {
            place.block = {this, std::exchange(m_blocks, &place.block)};
        }
        for (std::string& string : m_strings) {
            string.reserve(STRING_SIZE);
        }
        m_stringCapacity = m_strings.front().capacity();
    }

    static ThreadStore* own() { return s_own != nullptr || s_hasEnded ? s_own : make(); }

    [[gnu::noinline]] static ThreadStore* make() {
        try {
            s_own = new ThreadStore;
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
        s_end.store = s_own;
        return s_own;
    }

    Block* take() {
        if (m_blocks == nullptr) {
            m_blocks = m_returned.exchange(nullptr, std::memory_order_acquire);
        }
        Block* const block = m_blocks;
        if (block != nullptr) {
            m_blocks = block->next;
        }
        return block;
    }

    // On another thread.
    void giveBack(Block* block) {
        block->next = m_returned.load(std::memory_order_relaxed);
        do {
            if (block->next == &s_closed) {
                if (m_missing.fetch_sub(1) == 1) {
                    delete this;
                }
                return;
            }
        } while (!m_returned.compare_exchange_weak(block->next, block, std::memory_order_release,
                                                   std::memory_order_relaxed));
    }

    // Blocks that come back from now on are only counted, the last one by whoever is last.
    void close() {
        int missing = BLOCKS;
        for (Block* chain : {m_blocks, m_returned.exchange(&s_closed)}) {
            for (; chain != nullptr; chain = chain->next) {
                --missing;
            }
        }
        if (m_missing.fetch_add(missing) == -missing) {
            delete this;
        }
    }

    static inline thread_local constinit ThreadStore* s_own = nullptr;
    static inline thread_local constinit bool s_hasEnded = false;
    static inline thread_local End s_end{};
    static inline Block s_closed{};

    Block* m_blocks = nullptr;
    std::size_t m_stringCount = STRINGS;
    std::size_t m_stringCapacity = 0;
    std::array<std::string, STRINGS> m_strings;
    std::atomic<Block*> m_returned = nullptr;
    std::atomic<int> m_missing = 0;
    std::array<Place, BLOCKS> m_places;
};

/// Whether jobs, tasks and traced names come from the stores. With a sanitizer, which is to see the
/// life of each, they come from the heap.
#ifdef CORVANE_SANITIZED
inline constexpr bool REUSES_MEMORY = false;
#else
inline constexpr bool REUSES_MEMORY = true;
#endif

/// A base whose derived objects are short-lived.
class ShortLived {
public:
    static void* operator new(std::size_t size) {
        return REUSES_MEMORY ? ThreadStore::allocate(size) : ::operator new(size);
    }
    static void operator delete(void* memory) noexcept {
        REUSES_MEMORY ? ThreadStore::deallocate(memory) : ::operator delete(memory);
    }
};
