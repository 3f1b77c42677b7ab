// Delivers events to the plugin, on the test's thread and on others, and waits until they are
// handled.
#pragma once

#include <corvane/testkit/Host.h>

#include <condition_variable>
#include <exception>
#include <list>
#include <mutex>
#include <set>
#include <string>

#include "platform/host/inject/DeliveryThreads.h"
#include "taskExecutor/ITaskInvoker.h"

namespace corvane::testkit {

/// Owner: Host, whose thread calls every function. Errors: see Host.
class Emissions {
public:
    static bool emit(const std::string& event, const Arguments& arguments);
    void emitFromThreads(int count, const std::string& event, const Arguments& arguments);

    /// Waits for the deliveries first, then for the task context behind `invoker`.
    void waitUntilHandled(ITaskInvoker& invoker, std::chrono::milliseconds limit);

    /// Waits for the deliveries without a time limit and discards their exceptions.
    void abandon();

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    void awaitDeliveries(TimePoint deadline, std::chrono::milliseconds limit);

    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::multiset<std::string> m_underWay;  // the events being delivered
    std::exception_ptr m_thrown;            // the first exception of a delivery
    std::list<host::DeliveryThreads> m_threads;
};

}  // namespace corvane::testkit
