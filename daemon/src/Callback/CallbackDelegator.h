// The registry of event sources. A source exists, and its platform callback is set, exactly while
// it has a subscriber.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <utility>

#include "daemon/src/Callback/CallbackType.h"
#include "daemon/src/Callback/ICallback.h"
#include "daemon/src/Callback/Singleton.h"
#include "daemon/src/Callback/SubscriberList.h"
#include "daemon/src/common/log.h"
#include "taskExecutor/ITaskInvoker.h"
#include "taskExecutor/Mutex.h"

/// One instance for the process, held by Singleton<CallbackDelegator>. Owns every event source.
///
/// Threads: registerCallback and unregisterCallback from any thread. One mutex serialises them and
/// every platform set and unset call; a delivery never locks it.
/// Errors: the exhaustion of memory and a mutex that can't be locked. Results of platform calls are
/// ignored.
class CallbackDelegator {
public:
    CallbackDelegator();
    /// Deletes the remaining event sources, which unsets their platform callbacks.
    virtual ~CallbackDelegator();
    CallbackDelegator(const CallbackDelegator&) = delete;
    CallbackDelegator& operator=(const CallbackDelegator&) = delete;

    /// Subscribes `invoker` to the events of `type`. The first subscription creates the source and
    /// sets the platform callback. Always returns 0. If memory is exhausted, nothing has changed.
    template <typename CallbackClass>
    int registerCallback(CallbackType type, ITaskInvoker* invoker,
                         typename CallbackClass::Function fn, void* userData) EXCLUDES(m_mutex);

    /// Removes all of `invoker`'s subscriptions to `type`. When no subscriber remains, the platform
    /// callback is unset and the source deleted. Always returns 0.
    template <typename CallbackClass>
    int unregisterCallback(CallbackType type, ITaskInvoker* invoker) EXCLUDES(m_mutex);

    /// Returns the map that holds `type`: the same map for every type.
    std::map<CallbackType, std::unique_ptr<ICallback>>& getCallbackList(CallbackType type)
        REQUIRES(m_mutex);
    Mutex& mutex() RETURN_CAPABILITY(m_mutex) { return m_mutex; }

private:
    /// What subscribing needs to know of a class of event sources.
    struct SourceClass {
        std::unique_ptr<ICallback> (*create)();
        /// Throws std::bad_cast if `source` is of another class.
        SubscriberList& (*check)(ICallback& source);
        void (*registerCallback)(SubscriberList& source);
    };
    using Remove = std::size_t (*)(ICallback& source, ITaskInvoker* invoker);

    // What the two operations do for every class. The log gives the template's signature.
    int registerCallback(CallbackType type, ITaskInvoker* invoker, AnyFunction fn, void* userData,
                         const SourceClass& sourceClass) EXCLUDES(m_mutex);
    int unregisterCallback(CallbackType type, ITaskInvoker* invoker, Remove remove,
                           const char* signature) EXCLUDES(m_mutex);

    void init();
    void deinit();

    std::map<CallbackType, std::unique_ptr<ICallback>> m_callbacks GUARDED_BY(m_mutex);
    // Reserved for other groups of types; always empty.
    std::map<CallbackType, std::unique_ptr<ICallback>> m_reserved2;
    std::map<CallbackType, std::unique_ptr<ICallback>> m_reserved3;
    Mutex m_mutex;
};

template <typename CallbackClass>
int CallbackDelegator::registerCallback(CallbackType type, ITaskInvoker* invoker,
                                        typename CallbackClass::Function fn, void* userData) {
    static constexpr SourceClass SOURCE_CLASS{
        .create = []() -> std::unique_ptr<ICallback> { return std::make_unique<CallbackClass>(); },
        .check = [](ICallback& source) -> SubscriberList& {
            return dynamic_cast<CallbackClass&>(source);
        },
        .registerCallback =
            [](SubscriberList& source) { static_cast<CallbackClass&>(source).registerCallback(); },
    };
    return registerCallback(type, invoker, reinterpret_cast<AnyFunction>(fn), userData,
                            SOURCE_CLASS);
}

// Everything that allocates precedes the platform's set call. So if a first subscription fails, no
// platform callback has been set, and the source is deleted without a log line. This function is
// defined here, because the log names the file.
inline int CallbackDelegator::registerCallback(CallbackType type, ITaskInvoker* invoker,
                                               AnyFunction fn, void* userData,
                                               const SourceClass& sourceClass) {
    const MutexLock lock(m_mutex);
    auto& callbacks = getCallbackList(type);
    const bool isFirst = !callbacks.contains(type);
    std::map<CallbackType, std::unique_ptr<ICallback>> created;
    if (isFirst) {
        LOGI("no callback, crate callback.");
        created.emplace(type, sourceClass.create());
    }
    SubscriberList& source = sourceClass.check(*(isFirst ? created : callbacks).at(type));
    auto list = source.prepare(invoker, fn, userData);
    if (isFirst) {
        sourceClass.registerCallback(source);
        callbacks.merge(created);
    }
    LOGI("task invoker : %p, callback : %p", static_cast<void*>(invoker),
         reinterpret_cast<void*>(fn));
    source.add(std::move(list));
    return 0;
}

template <typename CallbackClass>
int CallbackDelegator::unregisterCallback(CallbackType type, ITaskInvoker* invoker) {
    const Remove remove = [](ICallback& source, ITaskInvoker* subscriber) {
        return dynamic_cast<CallbackClass&>(source).remove(subscriber);
    };
    return unregisterCallback(type, invoker, remove, __PRETTY_FUNCTION__);
}

inline int CallbackDelegator::unregisterCallback(CallbackType type, ITaskInvoker* invoker,
                                                 Remove remove, const char* signature) {
    const MutexLock lock(m_mutex);
    ApiTracker tracker(signature, __LINE__);
    auto& callbacks = getCallbackList(type);
    const auto found = callbacks.find(type);
    if (found == callbacks.end()) {
        LOGI("no callback");
        return 0;
    }
    if (remove(*found->second, invoker) == 0) {
        callbacks.erase(found);
    }
    return 0;
}
