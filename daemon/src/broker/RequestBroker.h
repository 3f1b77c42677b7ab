// The implementation of the plugin ABI: forwards each operation to the callback delegator or to the
// plugin's task context.
#pragma once

#include <functional>

#include "daemon/src/broker/IRequestBroker.h"

class ITaskInvoker;

/// One for each plugin, owned by it. Its destructor removes no subscription.
/// Threads and errors: see IRequestBroker.
class RequestBroker : public IRequestBroker {
public:
    /// `invoker` is the plugin's. It is not owned and outlives the broker.
    explicit RequestBroker(ITaskInvoker* invoker) : m_invoker(invoker) {}

#define BROKER_OPERATION(subscribe, unsubscribe, CallbackFunction, type, Source) \
    int subscribe(CallbackFunction callback, void* userData) override;           \
    int unsubscribe() override;
#include "daemon/src/broker/BrokerOperations.def"
#undef BROKER_OPERATION

    int RequestToInvokeInTaskExecutor(std::function<void(void*)> function, void* userData) override;

private:
    ITaskInvoker* m_invoker;
};
