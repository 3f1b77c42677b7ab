// The fan-outs that are under way in the process, so that what they may be using outlives them:
// replaced lists, sources that were let go, the libraries of plugins that have unsubscribed.
// A fan-out counts itself in for the phase in which it begins. The next phase begins once nobody is
// left of the one before. So two phases on, nobody was left of either, and all fan-outs that had
// begun have ended.
// Threads count in places of their own, or all events of the process would meet in one.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

/// What fan-outs may still be using when nobody else can reach it any more.
class Retired {
public:
    /// Ends the object. On any thread, with the fan-outs' mutex held.
    virtual void reclaim() noexcept = 0;

protected:
    virtual ~Retired() = default;

private:
    friend class FanOuts;
    Retired* m_next = nullptr;
    unsigned m_phase = 0;
};

/// One for the process. Threads: any; enter and leave in pairs on one thread. Errors: a mutex that
/// can't be locked.
class FanOuts {
public:
    using Phase = unsigned;

    /// What it returns is to be given to leave.
    Phase enter() {
        const Phase phase = m_phase.load() & 1;
        own().inside[phase].fetch_add(1);
        return phase;
    }

    void leave(Phase phase) {
        if (own().inside[phase].fetch_sub(1) == 1 && m_isAwaited.load()) {
            proceed();
        }
    }

    /// Reclaims `object`, which no new fan-out can find, when all that have begun have ended: now,
    /// or as one of the fan-outs leaves, at the latest the last one of the process.
    void retire(Retired& object);

    /// Whether all fan-outs that began before the call have ended. Waits for them, but with all
    /// calls together not longer than `PATIENCE`: a callback may never return. Not to be called
    /// in a fan-out, or by two threads at once.
    bool waitForEarlier();

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

    void proceed();
    void beginPhases();
    bool isOver(Phase phase) const;

    std::array<Counters, 16> m_counters;
    std::atomic<Phase> m_phase = 0;
    std::atomic<bool> m_isAwaited = false;  // somebody, or something retired, waits for an end
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isWaitedFor = false;
    Retired* m_oldest = nullptr;
    Retired* m_newest = nullptr;
    std::chrono::steady_clock::duration m_patience = PATIENCE;
};

inline FanOuts allFanOuts;

/// One of them, as long as it lives. On one thread.
class FanOut {
public:
    FanOut() : m_phase(allFanOuts.enter()) {}
    ~FanOut() { allFanOuts.leave(m_phase); }
    FanOut(const FanOut&) = delete;
    FanOut& operator=(const FanOut&) = delete;

private:
    const FanOuts::Phase m_phase;
};
