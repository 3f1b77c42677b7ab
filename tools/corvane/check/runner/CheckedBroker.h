// The daemon's broker, with a ledger of what the plugin does.
#pragma once

#include <functional>

#include "daemon/src/broker/RequestBroker.h"
#include "tools/corvane/check/runner/Subscriptions.h"

namespace corvane::check {

/// Owner: the plugin's object; the ledger outlives it. Threads: as IRequestBroker.
class CheckedBroker : public RequestBroker {
public:
    CheckedBroker(ITaskInvoker* invoker, Ledger& ledger)
        : RequestBroker(invoker), m_ledger(ledger) {}

#define BROKER_OPERATION(subscribe_, unsubscribe_, CallbackFunction, type, Source) \
    int subscribe_(CallbackFunction callback, void* userData) override {           \
        return m_ledger.subscribe(type, callback != nullptr)                       \
                   ? RequestBroker::subscribe_(callback, userData)                 \
                   : 0;                                                            \
    }                                                                              \
    int unsubscribe_() override {                                                  \
        m_ledger.unsubscribe(type);                                                \
        return RequestBroker::unsubscribe_();                                      \
    }
#include "daemon/src/broker/BrokerOperations.def"
#undef BROKER_OPERATION

    int RequestToInvokeInTaskExecutor(std::function<void(void*)> function, void* userData) override;

private:
    Ledger& m_ledger;
};

}  // namespace corvane::check
