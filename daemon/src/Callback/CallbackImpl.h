// The subscriber list of one kind of event, and the fan-out of an event to it.
// The list is immutable and replaced as a whole; a fan-out takes the current one as
// its snapshot, without a lock or a copy. docs/threading.md tells why that is safe.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <new>
#include <tuple>
#include <utility>
#include <vector>

#include "ICallback.h"
#include "ITaskInvoker.h"
#include "log.h"

/// `CallbackFunction` is the platform's callback type, `Types` what its arguments before
/// the user data travel as: a C string as `const std::string&`, all else as it is.
///
/// Owned by the registry. A source let go during its own fan-out ends for the platform
/// and the log at once; its storage ends with the last fan-out inside it.
///
/// Threads: add, remove, registerCallback, unregisterCallback and destruction under the
/// registry's lock; onCallback and getInvokingTask on any thread, without it.
/// Errors: the exhaustion of memory; from onCallback also what invokeTask throws.
template <typename CallbackFunction, typename... Types>
class CallbackImpl : public ICallback {
public:
    using Function = CallbackFunction;

    struct CallbackEntry {
        ITaskInvoker* invoker;  // not owned; who subscribed
        std::function<void(Types...)> deliver;
    };

    CallbackImpl() : m_entries(new const Entries) {}
    ~CallbackImpl() override { delete m_entries.load(); }
    CallbackImpl(const CallbackImpl&) = delete;
    CallbackImpl& operator=(const CallbackImpl&) = delete;

    /// The task that calls `fn` with copies of the arguments. It outlives this source.
    virtual std::function<void()> getInvokingTask(CallbackFunction fn, Types... args,
                                                  void* userData) = 0;
    virtual void registerCallback() = 0;
    virtual void unregisterCallback() = 0;

    /// Appends a subscription; the same invoker may subscribe again.
    void add(ITaskInvoker* invoker, CallbackFunction fn, void* userData) {
        auto entries = std::make_unique<Entries>(*m_entries.load());
        entries->push_back({invoker, [this, invoker, fn, userData](Types... args) {
                                const ITaskInvoker::Task task =
                                    getInvokingTask(fn, args..., userData);
                                invoker->invokeTask(task);
                            }});
        replaceEntries(std::move(entries));
    }

    /// Removes every subscription of `invoker`; returns how many of others are left.
    size_t remove(ITaskInvoker* invoker) {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        LOGI("remove invoker : %p", static_cast<void*>(invoker));
        auto entries = std::make_unique<Entries>(*m_entries.load());
        std::erase_if(*entries,
                      [invoker](const CallbackEntry& entry) { return entry.invoker == invoker; });
        const size_t left = entries->size();
        replaceEntries(std::move(entries));
        return left;
    }

    /// Delivers one event to every subscription in the order they were made.
    void onCallback(Types... args) {
        const FanOut fanOut(*this);
        for (const CallbackEntry& entry : *m_entries.load()) {
            LOGI("invoker : %p", static_cast<void*>(entry.invoker));
            entry.deliver(args...);
        }
    }

protected:
    /// The platform's call, whose last argument is the source.
    template <typename... Args>
    static void onPlatformCallback(Args... args) {
        const auto all = std::tie(args...);
        [&all]<std::size_t... Index>(std::index_sequence<Index...>) {
            auto* source = static_cast<CallbackImpl*>(std::get<sizeof...(Types)>(all));
            source->onCallback(std::get<Index>(all)...);
        }
        (std::index_sequence_for<Types...>{});
    }

    /// What a source's end looks like from outside, under the destructor's name.
    void end(const char* destructor, int line) {
        if (std::exchange(m_ended, true)) {
            return;
        }
        ApiTracker tracker(destructor, line);
        unregisterCallback();
    }

    /// Destroys and frees `source` now, or when the last fan-out leaves it.
    static void release(CallbackImpl* source) {
        if (source->m_fanOuts.fetch_or(RELEASED) == 0) {
            destroy(source);
        }
    }

private:
    using Entries = std::vector<CallbackEntry>;

    class FanOut {
    public:
        explicit FanOut(CallbackImpl& source) : m_source(source) {
            m_source.m_fanOuts.fetch_add(1);
        }
        ~FanOut() {
            if (m_source.m_fanOuts.fetch_sub(1) == (RELEASED | 1)) {
                destroy(&m_source);
            }
        }
        FanOut(const FanOut&) = delete;
        FanOut& operator=(const FanOut&) = delete;

    private:
        CallbackImpl& m_source;
    };

    static constexpr std::size_t RELEASED = ~(~std::size_t{0} >> 1);

    static void destroy(CallbackImpl* source) {
        void* storage = dynamic_cast<void*>(source);
        source->~CallbackImpl();
        ::operator delete(storage);
    }

    // A fan-out counts itself in before it takes the list, so a count of 0 seen after
    // the exchange says that nobody is left in a replaced list.
    void replaceEntries(std::unique_ptr<const Entries> entries) {
        m_replaced.reserve(m_replaced.size() + 1);
        m_replaced.emplace_back(m_entries.exchange(entries.release()));
        if (m_fanOuts == 0) {
            m_replaced.clear();
        }
    }

    std::atomic<const Entries*> m_entries;
    std::vector<std::unique_ptr<const Entries>> m_replaced;
    std::atomic<std::size_t> m_fanOuts = 0;  // fan-outs inside, and RELEASED
    bool m_ended = false;
};
