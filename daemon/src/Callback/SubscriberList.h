// The part of an event source that is the same for every kind of event, so that its code exists
// once: the subscriptions, and the end of the source's life. The list is immutable and replaced as
// a whole (copy on write), so a delivery reads the current list without a lock or a copy.
// docs/threading.md explains why that is safe.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "daemon/src/Callback/Epochs.h"
#include "daemon/src/Callback/ICallback.h"

class ITaskInvoker;

/// A function pointer of any type. It is called only after a cast back to its own type.
using AnyFunction = void (*)();

/// Base of CallbackImpl, which gives the functions their types. Threads and errors: see there.
class SubscriberList : public ICallback {
public:
    /// One subscription.
    struct CallbackEntry {
        ITaskInvoker* invoker;  // the subscriber; not owned
        AnyFunction fn;
        void* userData;
    };

    /// Immutable once it is the current list.
    struct List final : Retired {
        explicit List(std::vector<CallbackEntry> subscriptions = {})
            : entries(std::move(subscriptions)) {}
        void reclaim() noexcept override { delete this; }

        std::vector<CallbackEntry> entries;
    };

    SubscriberList();
    ~SubscriberList() override;
    SubscriberList(const SubscriberList&) = delete;
    SubscriberList& operator=(const SubscriberList&) = delete;

    /// Returns a copy of the current list with one more subscription, for add. The list must not
    /// change in between.
    std::unique_ptr<List> prepare(ITaskInvoker* invoker, AnyFunction fn, void* userData) const;
    /// Appends the subscription. Can't fail.
    void add(std::unique_ptr<List> list) noexcept;

protected:
    /// The current subscriptions, in the order of subscribing. The caller holds an EpochGuard if
    /// they may change meanwhile.
    const std::vector<CallbackEntry>& subscriptions() const { return m_current.load()->entries; }

    /// Removes every subscription of `invoker`. Returns the number of remaining subscriptions.
    std::size_t removeAll(ITaskInvoker* invoker);

    /// Destroys the source and frees its memory when no delivery can still use it.
    void retire() noexcept;

    bool m_isRegistered = false;
    bool m_hasEnded = false;

private:
    struct Source final : Retired {
        explicit Source(SubscriberList& all) : list(all) {}
        void reclaim() noexcept override;

        SubscriberList& list;
    };

    std::atomic<List*> m_current;
    Source m_source{*this};
};
