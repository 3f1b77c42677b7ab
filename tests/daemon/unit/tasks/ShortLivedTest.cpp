// Reuse of the memory of short-lived objects: on one thread, on several, and while a thread ends.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include "taskExecutor/ShortLived.h"

namespace {

template <std::size_t SIZE>
struct Object : ShortLived {
    Object() { std::memset(memory.data(), 0xaa, SIZE); }
    std::array<std::byte, SIZE> memory;
};
using Largest = Object<ShortLived::BLOCK_SIZE>;
using TooLarge = Object<ShortLived::BLOCK_SIZE + 1>;
using Objects = std::vector<std::unique_ptr<Largest>>;

struct Base : ShortLived {
    virtual ~Base() = default;
};
struct Derived : Base {
    std::array<std::byte, ShortLived::BLOCK_SIZE> memory{};
};

Objects make(std::size_t count) {
    Objects objects(count);
    for (auto& object : objects) {
        object = std::make_unique<Largest>();
    }
    return objects;
}

std::set<void*> placesOf(const Objects& objects) {
    std::set<void*> places;
    for (const auto& object : objects) {
        places.insert(object.get());
    }
    return places;
}

/// Calls `function` on a new thread, which keeps no blocks yet.
template <typename Function>
void onNewThread(Function function) {
    std::thread(function).join();
}

}  // namespace

TEST(ShortLivedTest, AnObjectGetsTheMemoryThatWasFreedLast) {
    onNewThread([] {
        auto first = std::make_unique<Object<1>>();
        auto second = std::make_unique<Object<1>>();
        void* const place = first.get();
        EXPECT_NE(place, second.get());
        second.reset();
        first.reset();
        EXPECT_EQ(std::make_unique<Largest>().get(), place);
    });
}

TEST(ShortLivedTest, AThreadKeepsAsManyBlocksAsItsCapacity) {
    onNewThread([] {
        Objects objects = make(ShortLived::CAPACITY);
        const std::set<void*> kept = placesOf(objects);
        Objects more = make(ShortLived::CAPACITY);
        objects.clear();
        more.clear();
        const Objects again = make(ShortLived::CAPACITY);
        EXPECT_EQ(placesOf(again), kept);
        EXPECT_FALSE(kept.contains(std::make_unique<Largest>().get()));
    });
}

TEST(ShortLivedTest, AnObjectThatIsTooLargeIsNotKept) {
    onNewThread([] {
        auto object = std::make_unique<Largest>();
        void* const place = object.get();
        object.reset();
        auto tooLarge = std::make_unique<TooLarge>();
        EXPECT_NE(static_cast<void*>(tooLarge.get()), place);
        tooLarge.reset();
        std::unique_ptr<Base> derived = std::make_unique<Derived>();
        derived.reset();
        EXPECT_EQ(std::make_unique<Largest>().get(), place);
    });
}

TEST(ShortLivedTest, TheThreadThatFreesABlockKeepsIt) {
    onNewThread([] {
        Objects objects = make(3);
        const std::set<void*> places = placesOf(objects);
        onNewThread([&] {
            objects.clear();
            EXPECT_EQ(placesOf(make(3)), places);
        });
    });
}

TEST(ShortLivedTest, ObjectsOutliveTheThreadThatMadeThem) {
    Objects objects;
    onNewThread([&] {
        objects = make(2 * ShortLived::CAPACITY);
        objects.resize(ShortLived::CAPACITY);
    });
    for (const auto& object : objects) {
        EXPECT_EQ(object->memory.back(), std::byte{0xaa});
    }
}

TEST(ShortLivedTest, ObjectsMayMoveBetweenManyThreadsThatComeAndGo) {
    std::mutex mutex;
    Objects shared;
    const auto exchange = [&](unsigned seed) {
        std::mt19937 random(seed);
        for (int round = 0; round < 2000; ++round) {
            auto object = std::make_unique<Largest>();
            const std::lock_guard lock(mutex);
            shared.push_back(std::move(object));
            if (shared.size() == 40) {
                std::swap(shared[random() % shared.size()], shared.back());
                shared.pop_back();
            }
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
    EXPECT_EQ(placesOf(shared).size(), 39U);
}

// Without LeakSanitizer, this test does not notice memory that is not freed.
TEST(ShortLivedTest, AThreadThatIsEndingKeepsNothing) {
    struct Late {
        ~Late() {
            early.reset();
            make(2);
        }
        std::unique_ptr<Largest> early;
    };
    onNewThread([] {
        thread_local Late late;  // destroyed after the kept blocks are freed
        late.early = std::make_unique<Largest>();
        make(3);
    });
}

#ifdef __SANITIZE_ADDRESS__
TEST(ShortLivedDeathTest, TheUseOfAKeptBlockIsReported) {
    auto object = std::make_unique<Largest>();
    volatile std::byte* const byte = object->memory.data();
    object.reset();
    EXPECT_DEATH(static_cast<void>(*byte), "use-after-poison");
}
#endif
