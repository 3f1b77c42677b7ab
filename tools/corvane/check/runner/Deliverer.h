// Delivers the events to which a plugin subscribed.
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/EventVariants.h"
#include "tools/corvane/check/runner/CheckedPlugin.h"
#include "tools/corvane/check/runner/Subscriptions.h"

namespace corvane::check {

/// Owner: PluginRun or main. Threads: deliverAll any; the others the main thread.
class Deliverer {
public:
    Deliverer(CheckedPlugin& plugin, const Subscriptions& subscriptions)
        : m_plugin(plugin), m_subscriptions(subscriptions) {}

    /// Delivers all variants of every event on this thread; of a slow event only the first.
    void deliverAll();
    /// Delivers all events several times on several threads. Returns immediately; the last thread
    /// calls `onEnd`.
    void deliverOnThreads(void (*onEnd)(void*), void* data);
    void joinThreads();

    unsigned delivered() const { return m_delivered; }

private:
    void deliver(const corvane::host::Event& event, const corvane::host::EventVariant& variant);
    void deliverRounds();

    CheckedPlugin& m_plugin;
    const Subscriptions& m_subscriptions;
    std::atomic<unsigned> m_delivered = 0;
    std::atomic<unsigned> m_active = 0;
    std::vector<std::thread> m_threads;
};

}  // namespace corvane::check
