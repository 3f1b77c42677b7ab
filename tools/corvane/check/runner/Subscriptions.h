// What the plugin has subscribed to.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "daemon/src/Callback/CallbackType.h"
#include "daemon/src/broker/RequestBroker.h"

namespace corvane::check {

/// Owner: the rehearsal. Threads: any. Reports what is wrong with an operation.
class Subscriptions {
public:
    /// False if the subscription is not to be made.
    bool subscribe(CallbackType type, bool hasCallback);
    void unsubscribe(CallbackType type);

    /// The names of the events that are subscribed to.
    std::vector<std::string> events() const;

    /// Reports what is still subscribed to, and unsubscribes `broker` from it.
    void settle(RequestBroker& broker);

private:
    mutable std::mutex m_mutex;
    std::map<CallbackType, int> m_counts;  // 0: it was subscribed to once
};

}  // namespace corvane::check
