// Lets one thread hold another at a point of its choice. Waits are limited: a test
// that would hang fails instead.
#pragma once

#include <chrono>
#include <future>
#include <stdexcept>

constexpr std::chrono::seconds TEST_TIME_LIMIT{20};

/// Threads: open from one, wait from any.
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
