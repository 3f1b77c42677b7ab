#include "RequestBroker.h"

#include "BluetoothCallback.h"
#include "CallbackDelegator.h"
#include "ITaskInvoker.h"
#include "SoundManagerCallback.h"
#include "log.h"

#define BROKER_OPERATION(subscribe, unsubscribe, CallbackFunction, type, Source)                   \
    int RequestBroker::subscribe(CallbackFunction callback, void* userData) {                      \
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);                                         \
        return Singleton<CallbackDelegator>::getInstance()->registerCallback<Source>(              \
            type, m_invoker, callback, userData);                                                  \
    }                                                                                              \
    int RequestBroker::unsubscribe() {                                                             \
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);                                         \
        return Singleton<CallbackDelegator>::getInstance()->unregisterCallback<Source>(type,       \
                                                                                       m_invoker); \
    }
#include "BrokerOperations.def"
#undef BROKER_OPERATION

int RequestBroker::RequestToInvokeInTaskExecutor(std::function<void(void*)> function,
                                                 void* userData) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    m_invoker->invokeTask([function, userData] { function(userData); });
    return 0;
}
