#include "FanOuts.h"

#include <algorithm>

void FanOuts::retire(Retired& object) {
    const std::lock_guard lock(m_mutex);
    object.m_phase = m_phase;
    (m_oldest == nullptr ? m_oldest : m_newest->m_next) = &object;
    m_newest = &object;
    beginPhases();
}

bool FanOuts::waitForEarlier() {
    const auto start = std::chrono::steady_clock::now();
    std::unique_lock lock(m_mutex);
    const Phase now = m_phase;
    m_isWaitedFor = true;
    beginPhases();
    const bool result =
        m_changed.wait_until(lock, start + m_patience, [this, now] { return isOver(now); });
    m_isWaitedFor = false;
    m_patience -= std::chrono::steady_clock::now() - start;
    return result;
}

void FanOuts::proceed() {
    const std::lock_guard lock(m_mutex);
    beginPhases();
}

// Whoever leaves meanwhile either is not counted any more or sees that he is awaited.
void FanOuts::beginPhases() {
    m_isAwaited = true;
    const auto isEmpty = [this](Phase phase) {
        return std::ranges::all_of(m_counters, [phase](const Counters& counters) {
            return counters.inside[phase & 1].load() == 0;
        });
    };
    for (int phases = 0; phases < 2 && isEmpty(m_phase + 1); ++phases) {
        ++m_phase;
    }
    while (m_oldest != nullptr && isOver(m_oldest->m_phase)) {
        Retired* const over = m_oldest;
        m_oldest = over->m_next;
        over->reclaim();
    }
    m_isAwaited = m_oldest != nullptr || m_isWaitedFor;
    m_changed.notify_all();
}

bool FanOuts::isOver(Phase phase) const {
    return m_phase - phase >= 2;
}
