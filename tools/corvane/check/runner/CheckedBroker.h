// The daemon's broker, which also records the plugin's subscriptions.
#pragma once

#include <functional>

#include "daemon/src/broker/RequestBroker.h"
#include "tools/corvane/check/runner/Subscriptions.h"

namespace corvane::check {

/// Owner: CheckedPlugin; `subscriptions` must outlive it. Threads: as IRequestBroker.
class CheckedBroker : public RequestBroker {
public:
    CheckedBroker(ITaskInvoker* invoker, Subscriptions& subscriptions)
        : RequestBroker(invoker), m_subscriptions(subscriptions) {}

#define BROKER_OPERATION(subscribe_, unsubscribe_, CallbackFunction, type, Source) \
    int subscribe_(CallbackFunction callback, void* userData) override {           \
        return m_subscriptions.subscribe(type, callback != nullptr)                \
                   ? RequestBroker::subscribe_(callback, userData)                 \
                   : 0;                                                            \
    }                                                                              \
    int unsubscribe_() override {                                                  \
        m_subscriptions.unsubscribe(type);                                         \
        return RequestBroker::unsubscribe_();                                      \
    }
#include "daemon/src/broker/BrokerOperations.def"
#undef BROKER_OPERATION

    int RequestToInvokeInTaskExecutor(std::function<void(void*)> function, void* userData) override;

private:
    Subscriptions& m_subscriptions;
};

}  // namespace corvane::check
