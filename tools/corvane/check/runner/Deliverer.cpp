// Delivers the events to which a plugin subscribed.
#include "tools/corvane/check/runner/Deliverer.h"

#include "platform/host/events/EventArguments.h"
#include "platform/host/events/ValueText.h"
#include "platform/host/inject/Delivery.h"
#include "tools/corvane/check/runner/CrashHandler.h"
#include "tools/corvane/check/runner/Report.h"

namespace corvane::check {

using namespace corvane::host;

namespace {

constexpr unsigned THREADS = 4;
constexpr unsigned ROUNDS = 5;

}  // namespace

void Deliverer::deliver(const Event& event, const EventVariant& variant) {
    const auto name =
        std::string(event.name) + (variant.difference.empty() ? "" : " " + variant.difference);
    report::step("the delivery of " + name);
    const TaskOrigin origin(event.name);
    try {
        m_delivered += host::deliver(event, variant.values);
    } catch (const InvalidValue&) {
        // The platform never delivers this combination.
    } catch (...) {
        report::finding("callback-exception", name + ": " + report::currentException());
    }
}

void Deliverer::deliverAll() {
    for (const auto& name : m_subscriptions.events()) {
        const auto& event = eventNamed(name);
        for (const auto& variant : variantsOf(event)) {
            deliver(event, variant);
            if (m_plugin.wasSlow(name)) {
                break;
            }
        }
    }
    report::step("");
}

void Deliverer::deliverOnThreads(void (*onEnd)(void*), void* data) {
    m_active = THREADS;
    for (unsigned i = 0; i < THREADS; ++i) {
        m_threads.emplace_back([this, onEnd, data] {
            deliverRounds();
            if (--m_active == 0) {
                onEnd(data);
            }
        });
    }
}

void Deliverer::joinThreads() {
    for (auto& thread : m_threads) {
        thread.join();
    }
}

void Deliverer::deliverRounds() {
    const crash::SignalStack stack;
    for (unsigned round = 0; round < ROUNDS; ++round) {
        for (const auto& name : m_subscriptions.events()) {
            if (round > 0 && m_plugin.wasSlow(name)) {
                continue;
            }
            const auto& event = eventNamed(name);
            deliver(event, {Values(event), ""});
        }
    }
    report::step("");
}

}  // namespace corvane::check
