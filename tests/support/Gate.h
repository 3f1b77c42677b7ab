// A gate at which one thread waits until another opens it. The wait has a time limit, so a test
// that would hang fails instead.
#pragma once

#include <chrono>
#include <future>
#include <stdexcept>

constexpr std::chrono::seconds TEST_TIME_LIMIT{20};

/// Threads: open on one thread, once; wait on any. Errors: wait throws std::runtime_error at the
/// time limit.
class Gate {
public:
    void open() { m_promise.set_value(); }
    void wait() const {
        if (m_opened.wait_for(TEST_TIME_LIMIT) != std::future_status::ready) {
            throw std::runtime_error("a gate stayed closed");
        }
    }

private:
    std::promise<void> m_promise;
    std::shared_future<void> m_opened = m_promise.get_future().share();
};
