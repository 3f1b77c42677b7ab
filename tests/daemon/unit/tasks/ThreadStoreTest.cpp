// Blocks and strings that a thread keeps.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "daemon/src/common/ThreadStore.h"

namespace {

std::vector<void*> allocateAll() {
    std::vector<void*> blocks(ThreadStore::BLOCKS);
    for (void*& block : blocks) {
        block = ThreadStore::allocate(ThreadStore::BLOCK_SIZE);
        std::memset(block, 0xaa, ThreadStore::BLOCK_SIZE);
    }
    return blocks;
}

void deallocateAll(const std::vector<void*>& blocks) {
    for (void* const block : blocks) {
        ThreadStore::deallocate(block);
    }
}

std::set<void*> setOf(const std::vector<void*>& blocks) {
    return {blocks.begin(), blocks.end()};
}

/// On a thread whose store nobody has used before.
template <typename Function>
void onNewThread(Function function) {
    std::thread(function).join();
}

TEST(ThreadStoreTest, GivesTheBlockThatCameBackLast) {
    onNewThread([] {
        void* const first = ThreadStore::allocate(1);
        void* const second = ThreadStore::allocate(1);
        EXPECT_NE(first, second);
        ThreadStore::deallocate(first);
        EXPECT_EQ(ThreadStore::allocate(ThreadStore::BLOCK_SIZE), first);
        ThreadStore::deallocate(first);
        ThreadStore::deallocate(second);
    });
}

TEST(ThreadStoreTest, TakesFromTheHeapWhatItHasNot) {
    onNewThread([] {
        const auto blocks = allocateAll();
        EXPECT_EQ(setOf(blocks).size(), ThreadStore::BLOCKS);
        const auto more = allocateAll();
        for (void* const block : more) {
            EXPECT_FALSE(setOf(blocks).contains(block));
        }
        deallocateAll(more);
        deallocateAll(blocks);

        void* const large = ThreadStore::allocate(ThreadStore::BLOCK_SIZE + 1);
        std::memset(large, 0xaa, ThreadStore::BLOCK_SIZE + 1);
        EXPECT_FALSE(setOf(blocks).contains(large));
        ThreadStore::deallocate(large);
        const auto again = allocateAll();
        EXPECT_EQ(setOf(again), setOf(blocks));
        deallocateAll(again);
    });
}

TEST(ThreadStoreTest, ABlockGivenBackOnAnotherThreadComesHome) {
    onNewThread([] {
        const auto blocks = allocateAll();
        onNewThread([&] { deallocateAll(blocks); });
        const auto again = allocateAll();
        EXPECT_EQ(setOf(again), setOf(blocks));
        deallocateAll(again);
    });
}

// LeakSanitizer and AddressSanitizer know whether the store lived long enough, and no longer.
TEST(ThreadStoreTest, BlocksOutliveTheThreadThatTookThem) {
    for (const std::size_t early : {0UL, 3UL, ThreadStore::BLOCKS}) {
        std::vector<void*> blocks;
        onNewThread([&] {
            blocks = allocateAll();
            for (std::size_t i = 0; i < early; ++i) {
                ThreadStore::deallocate(blocks.back());
                blocks.pop_back();
            }
        });
        for (void* const block : blocks) {
            std::memset(block, 0xbb, ThreadStore::BLOCK_SIZE);
        }
        deallocateAll(blocks);
    }
}

TEST(ThreadStoreTest, BlocksMayMoveBetweenManyThreadsThatComeAndGo) {
    std::mutex mutex;
    std::vector<void*> shared;
    const auto exchange = [&](unsigned seed) {
        std::mt19937 random(seed);
        for (int round = 0; round < 2000; ++round) {
            void* block = ThreadStore::allocate(random() % (2 * ThreadStore::BLOCK_SIZE));
            {
                const std::lock_guard lock(mutex);
                shared.push_back(block);
                if (shared.size() < 40) {
                    continue;
                }
                std::swap(shared[random() % shared.size()], shared.back());
                block = shared.back();
                shared.pop_back();
            }
            ThreadStore::deallocate(block);
        }
    };
    for (unsigned generation = 0; generation < 10; ++generation) {
        std::array<std::thread, 4> threads;
        for (unsigned i = 0; i < threads.size(); ++i) {
            threads[i] = std::thread(exchange, generation * 4 + i);
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    EXPECT_EQ(setOf(shared).size(), shared.size());
    deallocateAll(shared);
}

TEST(ThreadStoreTest, GivesTheStringThatCameBackLastWithAnotherText) {
    onNewThread([] {
        std::string string = ThreadStore::takeString("a text");
        EXPECT_EQ(string, "a text");
        const char* const place = string.data();
        ThreadStore::giveString(std::move(string));
        const std::string again = ThreadStore::takeString("another, longer text");
        EXPECT_EQ(again, "another, longer text");
        EXPECT_EQ(again.data(), place);
    });
}

TEST(ThreadStoreTest, TextsOfAnyLengthAndNumberAreRight) {
    onNewThread([] {
        for (int round = 0; round < 2; ++round) {
            std::vector<std::string> taken;
            for (std::size_t size = 0; size < 600; ++size) {
                const std::string text(size, 'x');
                taken.push_back(ThreadStore::takeString(text.c_str()));
                ASSERT_EQ(taken.back(), text);
            }
            for (std::string& string : taken) {
                ThreadStore::giveString(std::move(string));
            }
        }
    });
}

// What is destroyed behind the store, at the thread's end.
TEST(ThreadStoreTest, AThreadThatIsEndingDoesWithout) {
    struct Late {
        ~Late() {
            ThreadStore::deallocate(early);
            ThreadStore::deallocate(ThreadStore::allocate(1));
            ThreadStore::giveString(ThreadStore::takeString("late"));
        }
        void* early = nullptr;
    };
    onNewThread([] {
        thread_local Late late;
        late.early = ThreadStore::allocate(1);
    });
}

}  // namespace
