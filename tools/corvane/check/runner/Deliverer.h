// Delivers the events that a plugin subscribed to.
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "tools/corvane/check/runner/CheckedPlugin.h"
#include "tools/corvane/check/runner/EventVariants.h"
#include "tools/corvane/check/runner/Subscriptions.h"

namespace corvane::check {

/// Owner: the rehearsal. Threads: deliverAll any, the other the main thread.
class Deliverer {
public:
    Deliverer(CheckedPlugin& plugin, const Subscriptions& subscriptions)
        : m_plugin(plugin), m_subscriptions(subscriptions) {}

    /// On this thread, every event in all its forms. A slow one only in its first.
    void deliverAll();
    /// On several threads at once, all events, some times. Returns at once; `onEnd` is called
    /// on a thread.
    void deliverOnThreads(void (*onEnd)(void*), void* data);
    void joinThreads();

    unsigned delivered() const { return m_delivered; }

private:
    void deliver(const corvane::host::Event& event, const EventVariant& variant);
    void deliverRounds();

    CheckedPlugin& m_plugin;
    const Subscriptions& m_subscriptions;
    std::atomic<unsigned> m_delivered = 0;
    std::atomic<unsigned> m_active = 0;
    std::vector<std::thread> m_threads;
};

}  // namespace corvane::check
