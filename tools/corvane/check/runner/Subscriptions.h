// Records the subscriptions of the plugin.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "daemon/src/Callback/CallbackType.h"
#include "daemon/src/broker/RequestBroker.h"

namespace corvane::check {

/// Owner: PluginRun or main. Threads: any. Reports wrong uses of the operations as findings.
class Subscriptions {
public:
    /// Returns false if the broker must not be called.
    bool subscribe(CallbackType type, bool hasCallback);
    void unsubscribe(CallbackType type);

    /// Returns the names of the events to which the plugin is subscribed.
    std::vector<std::string> events() const;

    /// Reports the remaining subscriptions, and undoes them with `broker`.
    void reportAndUndo(RequestBroker& broker);

private:
    mutable std::mutex m_mutex;
    std::map<CallbackType, int> m_counts;  // 0: was subscribed before
};

}  // namespace corvane::check
