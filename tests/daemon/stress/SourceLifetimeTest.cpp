// An event source loses its last subscriber while several threads deliver its events.
#include <bluetooth.h>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <cstddef>
#include <thread>
#include <vector>

#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/ITaskInvoker.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/HeapInUse.h"

namespace {

constexpr int THREADS = 4;
constexpr int ROUNDS = 2'000;

void count(int, bt_adapter_state_e, void* userData) {
    ++*static_cast<std::atomic<int>*>(userData);
}

/// Waits until all threads are inside their delivery, then unsubscribes on each of them.
class LeavingInvoker : public ITaskInvoker {
public:
    RequestBroker broker{this};

    void invokeTask(const ITaskInvoker::Task& task) override {
        m_inside.arrive_and_wait();
        task();
        broker.BtAdapterUnsetStateChangedCb();
    }

private:
    std::barrier<> m_inside{THREADS};
};

}  // namespace

TEST(SourceLifetimeTest, TheLastFanOutInsideFreesASourceThatWasLetGo) {
    fake_platform::reset();
    fake_platform::recordNothing();
    std::size_t afterTheFirst = 0;
    for (int round = 0; round < ROUNDS; ++round) {
        LeavingInvoker leaving;
        std::atomic<int> served = 0;
        leaving.broker.BtAdapterSetStateChangedCb(count, &served);
        leaving.broker.BtAdapterSetStateChangedCb(count, &served);
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < THREADS; ++i) {
                threads.emplace_back([] {
                    fake_platform::deliver("bt_adapter_set_state_changed_cb", 0,
                                           BT_ADAPTER_STATE_ON);
                });
            }
        }
        ASSERT_EQ(served, 2 * THREADS);
        ASSERT_EQ(fake_platform::callbacksSet(), 0);
        if (round == 0) {
            afterTheFirst = heapInUse();
        }
    }
    EXPECT_LT(heapInUse(), afterTheFirst + 10'000);
    fake_platform::reset();
}
