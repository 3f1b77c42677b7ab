// Events on their way to the plugin, from the test's thread and from others.
#pragma once

#include <corvane/testkit/Host.h>

#include <condition_variable>
#include <exception>
#include <list>
#include <mutex>
#include <set>
#include <string>

#include "platform/host/bluetooth/inject/DeliveryThreads.h"
#include "taskExecutor/ITaskInvoker.h"

namespace corvane::testkit {

/// Owner: the host, on whose thread all is called. Errors: see Host.
class Emissions {
public:
    static bool emit(const std::string& event, const Arguments& arguments);
    void emitFromThreads(int count, const std::string& event, const Arguments& arguments);

    /// First for the deliveries, then for the task context behind `invoker`.
    void waitUntilHandled(ITaskInvoker& invoker, std::chrono::milliseconds limit);

    /// Waits for the deliveries without a limit, and forgets what they threw.
    void abandon();

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    void awaitDeliveries(TimePoint deadline, std::chrono::milliseconds limit);

    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::multiset<std::string> m_underWay;  // the events being delivered
    std::exception_ptr m_thrown;            // the first
    std::list<host::DeliveryThreads> m_threads;
};

}  // namespace corvane::testkit
