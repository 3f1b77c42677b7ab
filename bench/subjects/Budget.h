// The lower bound: as many locks, allocations, strings and log calls as a delivery requires, and
// nothing else. The difference to the daemon is the daemon's own overhead.
#pragma once

#include <dlog.h>

#include <array>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "bench/subjects/Subscriber.h"

template <typename... Args>
class Budget {
public:
    // For each delivery.
    static constexpr int LOCKS = 3;
    static constexpr int LOG_LINES = 19;
    static constexpr int STRINGS = 2;
    static constexpr int ALLOCATIONS = 3;  // the task, its job, the job's copy of the task

    template <typename Function>
    void subscribe(Function fn, void* userData) {
        m_subscribers.push_back([fn, userData](Args... args) { fn(args..., userData); });
    }

    void emit(Args... args) {
        for (const auto& subscriber : m_subscribers) {
            for (int i = 0; i < STRINGS; ++i) {
                const std::string name(SIGNATURE);
                __dlog_print(0, 3, "QVX", "%s: %s(%d) > IN >> [%s(%d)]", "log.h", "ApiTracker", 1,
                             name.c_str(), 1);
            }
            for (int i = STRINGS; i < LOG_LINES; ++i) {
                dlog_print(3, "QVX_TPL_CONTEXT", "%s : %s(%d)  task is queued\n", "TPLContext.h",
                           "_InvokeJob", 1);
            }
            for (int i = 0; i < ALLOCATIONS; ++i) {
                m_allocated = std::make_unique<Closure>();
            }
            for (int i = 0; i < LOCKS; ++i) {
                const std::lock_guard lock(m_mutex);
            }
            subscriber(args...);
        }
    }

private:
    static constexpr const char* SIGNATURE =
        "virtual void TaskInvokerImpl::invokeTask(const ITaskInvoker::Task&)";
    using Closure = std::array<void*, 4>;

    std::mutex m_mutex;
    std::unique_ptr<Closure> m_allocated;
    std::vector<std::function<void(Args...)>> m_subscribers;
};
