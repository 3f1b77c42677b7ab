// An event source of one kind: the types of its subscribers' functions, and the delivery of an
// event to them.
#pragma once

#include <cstddef>
#include <functional>
#include <new>
#include <tuple>
#include <utility>

#include "daemon/src/Callback/Epochs.h"
#include "daemon/src/Callback/SubscriberList.h"
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
class CallbackImpl : public SubscriberList {
public:
    using Function = CallbackFunction;

    /// Deleting a source unsets its platform callback immediately, if it has been registered; its
    /// memory is reclaimed later. noexcept is explicit because g++ does not infer it here.
    static void operator delete(CallbackImpl* source, std::destroying_delete_t) noexcept {
        if (source->m_isRegistered) {
            source->end();
        }
        source->m_hasEnded = true;
        source->retire();
    }
    /// Called when a constructor throws.
    static void operator delete(void* storage) { ::operator delete(storage); }

    /// Returns a task that calls `fn` with copies of the arguments. It may outlive this source.
    virtual std::function<void()> getInvokingTask(CallbackFunction fn, Types... args,
                                                  void* userData) = 0;
    virtual void registerCallback() = 0;
    virtual void unregisterCallback() = 0;

    using SubscriberList::add;
    /// Appends a subscription. An invoker may have several.
    void add(ITaskInvoker* invoker, CallbackFunction fn, void* userData) {
        add(prepare(invoker, reinterpret_cast<AnyFunction>(fn), userData));
    }

    /// Removes every subscription of `invoker`. Returns the number of remaining subscriptions.
    size_t remove(ITaskInvoker* invoker) {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        LOGI("remove invoker : %p", static_cast<void*>(invoker));
        return removeAll(invoker);
    }

    /// Delivers one event to every subscription, in the order of subscribing. The caller holds an
    /// EpochGuard if the subscriptions may change meanwhile.
    void onCallback(Types... args) {
        for (const CallbackEntry& entry : subscriptions()) {
            LOGI("invoker : %p", static_cast<void*>(entry.invoker));
            const ITaskInvoker::Task task = getInvokingTask(
                reinterpret_cast<CallbackFunction>(entry.fn), args..., entry.userData);
            entry.invoker->invokeTask(task);
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
};
