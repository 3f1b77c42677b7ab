// How many fan-outs are under way in the process, so that somebody can wait for those that have
// begun: whoever has removed a subscription, and then waited, knows that no fan-out will serve it.
// Threads count in places of their own, or all events of the process would meet in one.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

/// One for the process. Threads: enter on any thread, leave on the same; waitForEarlier on the main
/// thread, outside any fan-out. Errors: a mutex that can't be locked.
class FanOuts {
public:
    using Phase = unsigned;

    /// What it returns is to be given to leave.
    Phase enter() {
        Counters& counters = own();
        while (true) {
            const Phase phase = m_phase.load() & 1;
            counters.inside[phase].fetch_add(1);
            // Only one that has counted itself in before the phase ends belongs to it.
            if ((m_phase.load() & 1) == phase) {
                return phase;
            }
            leave(phase);
        }
    }

    void leave(Phase phase) {
        if (own().inside[phase].fetch_sub(1) == 1 && m_isAwaited.load()) {
            const std::lock_guard lock(m_mutex);
            m_changed.notify_all();
        }
    }

    /// Whether all fan-outs that began before the call have ended. Waits for them, but with all
    /// calls together not longer than `PATIENCE`: a callback may never return.
    bool waitForEarlier() {
        const Phase ending = m_phase.fetch_add(1) & 1;
        const auto ended = [this, ending] {
            return std::ranges::all_of(m_counters, [ending](const Counters& counters) {
                return counters.inside[ending].load() == 0;
            });
        };
        if (ended()) {
            return true;
        }
        const auto start = std::chrono::steady_clock::now();
        std::unique_lock lock(m_mutex);
        m_isAwaited = true;
        const bool result = m_changed.wait_until(lock, start + m_patience, ended);
        m_isAwaited = false;
        m_patience -= std::chrono::steady_clock::now() - start;
        return result;
    }

private:
    static constexpr std::chrono::milliseconds PATIENCE{1000};
    static constexpr std::size_t CACHE_LINE = 64;

    struct alignas(CACHE_LINE) Counters {
        std::atomic<std::size_t> inside[2] = {0, 0};
    };

    Counters& own() {
        static std::atomic<std::size_t> threads = 0;
        thread_local const std::size_t thread = threads.fetch_add(1);
        return m_counters[thread % m_counters.size()];
    }

    std::array<Counters, 16> m_counters;
    std::atomic<Phase> m_phase = 0;
    std::atomic<bool> m_isAwaited = false;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::chrono::steady_clock::duration m_patience = PATIENCE;
};

inline FanOuts allFanOuts;
