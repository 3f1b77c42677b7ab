// Drives one D-Bus connection from the main loop.
#include "platform/host/main-loop/BusPump.h"

#include <poll.h>
#include <time.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace corvane::host {

namespace {

// A peer that sends without end must not keep the main loop from its other work.
constexpr int STEPS_AT_ONCE = 64;

Ecore_Fd_Handler_Flags flagsFor(int events) {
    int flags = ECORE_FD_ERROR;
    flags |= (events & POLLIN) != 0 ? ECORE_FD_READ : 0;
    flags |= (events & POLLOUT) != 0 ? ECORE_FD_WRITE : 0;
    return static_cast<Ecore_Fd_Handler_Flags>(flags);
}

double secondsUntil(std::uint64_t monotonicUsec) {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const double seconds = static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
    return std::max(0.0, static_cast<double>(monotonicUsec) / 1e6 - seconds);
}

}  // namespace

BusPump::BusPump(BusPtr bus, Descriptor fd, std::function<void()> onLost,
                 std::function<bool()> feed)
    : m_bus(std::move(bus)),
      m_onLost(std::move(onLost)),
      m_feed(std::move(feed)),
      m_fd(std::move(fd)),
      m_handler(ecore_main_fd_handler_add(m_fd.get(), flagsFor(POLLIN), &BusPump::onReady, this,
                                          nullptr, nullptr)) {
    if (m_handler == nullptr) {
        throw std::bad_alloc();
    }
}

BusPump::~BusPump() {
    ecore_main_fd_handler_del(m_handler);
    if (m_timer != nullptr) {
        ecore_timer_del(m_timer);
    }
}

void BusPump::pump() {
    // A callback that runs the main loop itself re-enters this function within a message.
    if (m_processing) {
        return;
    }
    m_processing = true;
    process();
    m_processing = false;
    if (m_kept) {
        std::rethrow_exception(std::exchange(m_kept, nullptr));
    }
    if (m_lost) {
        const auto onLost = std::move(m_onLost);
        onLost();
    }
}

void BusPump::process() {
    int result = 1;
    for (int step = 0; step < STEPS_AT_ONCE && result > 0 && !m_kept; ++step) {
        result = sd_bus_process(m_bus.get(), nullptr);
        if (result == 0 && m_feed && m_feed()) {
            result = 1;
        }
    }
    m_lost = result < 0;
    m_hasMore = result > 0;
    if (!m_lost) {
        rearm();
    }
}

void BusPump::rearm() {
    ecore_main_fd_handler_active_set(m_handler, flagsFor(sd_bus_get_events(m_bus.get())));
    if (m_timer != nullptr) {
        ecore_timer_del(std::exchange(m_timer, nullptr));
    }
    std::uint64_t limit = UINT64_MAX;
    if (m_hasMore) {
        // Messages that the connection has already read don't make its descriptor readable.
        m_timer = ecore_timer_add(0, &BusPump::onTimeout, this);
    } else if (sd_bus_get_timeout(m_bus.get(), &limit) >= 0 && limit != UINT64_MAX) {
        m_timer = ecore_timer_add(secondsUntil(limit), &BusPump::onTimeout, this);
    }
}

Eina_Bool BusPump::onReady(void* self, Ecore_Fd_Handler*) {
    static_cast<BusPump*>(self)->pump();
    return ECORE_CALLBACK_RENEW;
}

Eina_Bool BusPump::onTimeout(void* self) {
    auto* const pump = static_cast<BusPump*>(self);
    pump->m_timer = nullptr;
    pump->pump();
    return ECORE_CALLBACK_CANCEL;
}

}  // namespace corvane::host
