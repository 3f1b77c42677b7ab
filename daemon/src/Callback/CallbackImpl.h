// The subscriber list of one kind of event, and the delivery of an event to its subscribers. The
// list is immutable and replaced as a whole (copy on write), so a delivery reads the current list
// without a lock or a copy. docs/threading.md explains why that is safe.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <new>
#include <tuple>
#include <utility>
#include <vector>

#include "daemon/src/Callback/Epochs.h"
#include "daemon/src/Callback/ICallback.h"
#include "daemon/src/common/log.h"
#include "taskExecutor/ITaskInvoker.h"

/// `CallbackFunction` is the platform's callback type. `Types` are its argument types without the
/// user data, with `const std::string&` for a C string.
///
/// Owned by the registry. A source may be deleted during a delivery; see operator delete.
///
/// Threads: add, remove, registerCallback, unregisterCallback and destruction under the
/// registry's lock; onCallback and getInvokingTask on any thread, without it.
/// Errors: the exhaustion of memory; from onCallback also what invokeTask throws.
template <typename CallbackFunction, typename... Types>
class CallbackImpl : public ICallback, private Retired {
public:
    using Function = CallbackFunction;

    struct CallbackEntry {
        ITaskInvoker* invoker;  // the subscriber; not owned
        std::function<void(Types...)> deliver;
    };

    /// Immutable once it is the current list.
    struct List final : Retired {
        explicit List(std::vector<CallbackEntry> subscriptions = {})
            : entries(std::move(subscriptions)) {}
        void reclaim() noexcept override { delete this; }

        std::vector<CallbackEntry> entries;
    };

    CallbackImpl() : m_current(new List) {}
    ~CallbackImpl() override { delete m_current.load(); }
    CallbackImpl(const CallbackImpl&) = delete;
    CallbackImpl& operator=(const CallbackImpl&) = delete;

    /// Deleting a source unsets its platform callback immediately, if it has been registered; its
    /// memory is reclaimed later. noexcept is explicit because g++ does not infer it here.
    static void operator delete(CallbackImpl* source, std::destroying_delete_t) noexcept {
        if (source->m_isRegistered) {
            source->end();
        }
        source->m_hasEnded = true;
        deliveryEpochs.retire(*source);
    }
    /// Called when a constructor throws.
    static void operator delete(void* storage) { ::operator delete(storage); }

    /// Returns a task that calls `fn` with copies of the arguments. It may outlive this source.
    virtual std::function<void()> getInvokingTask(CallbackFunction fn, Types... args,
                                                  void* userData) = 0;
    virtual void registerCallback() = 0;
    virtual void unregisterCallback() = 0;

    /// Appends a subscription. An invoker may have several.
    void add(ITaskInvoker* invoker, CallbackFunction fn, void* userData) {
        add(prepare(invoker, fn, userData));
    }

    /// The two steps of add: prepare allocates the new list, the second add can't fail. The list
    /// must not change in between.
    std::unique_ptr<List> prepare(ITaskInvoker* invoker, CallbackFunction fn, void* userData) {
        auto list = std::make_unique<List>(m_current.load()->entries);
        list->entries.push_back({invoker, [this, invoker, fn, userData](Types... args) {
                                     const ITaskInvoker::Task task =
                                         getInvokingTask(fn, args..., userData);
                                     invoker->invokeTask(task);
                                 }});
        return list;
    }
    void add(std::unique_ptr<List> list) noexcept { replaceList(std::move(list)); }

    /// Removes every subscription of `invoker`. Returns the number of remaining subscriptions.
    size_t remove(ITaskInvoker* invoker) {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        LOGI("remove invoker : %p", static_cast<void*>(invoker));
        auto list = std::make_unique<List>(m_current.load()->entries);
        std::erase_if(list->entries,
                      [invoker](const CallbackEntry& entry) { return entry.invoker == invoker; });
        const size_t left = list->entries.size();
        replaceList(std::move(list));
        return left;
    }

    /// Delivers one event to every subscription, in the order of subscribing. The caller holds an
    /// EpochGuard if the subscriptions may change meanwhile.
    void onCallback(Types... args) {
        for (const CallbackEntry& entry : m_current.load()->entries) {
            LOGI("invoker : %p", static_cast<void*>(entry.invoker));
            entry.deliver(args...);
        }
    }

protected:
    /// Called by the platform; the last argument is the source. The guard is created first, because
    /// the last subscriber may unsubscribe while a C string is converted.
    template <typename... Args>
    static void onPlatformCallback(Args... args) {
        const EpochGuard guard;
        const auto all = std::tie(args...);
        [&all]<std::size_t... Index>(std::index_sequence<Index...>) {
            auto* source = static_cast<CallbackImpl*>(std::get<sizeof...(Types)>(all));
            source->onCallback(std::get<Index>(all)...);
        }
        (std::index_sequence_for<Types...>{});
    }

    /// Unsets the platform callback, once, under the destructor's name in the log.
    virtual void end() = 0;

    bool m_isRegistered = false;
    bool m_hasEnded = false;

private:
    void replaceList(std::unique_ptr<List> list) {
        deliveryEpochs.retire(*m_current.exchange(list.release()));
    }

    void reclaim() noexcept override {
        void* storage = dynamic_cast<void*>(this);
        this->~CallbackImpl();
        ::operator delete(storage);
    }

    std::atomic<List*> m_current;
};
