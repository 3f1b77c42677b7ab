#include "daemon/src/broker/RequestBroker.h"

#include "daemon/src/Callback/BluetoothCallback.h"
#include "daemon/src/Callback/CallbackDelegator.h"
#include "daemon/src/Callback/SoundManagerCallback.h"
#include "daemon/src/common/log.h"
#include "taskExecutor/ITaskInvoker.h"

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
#include "daemon/src/broker/BrokerOperations.def"
#undef BROKER_OPERATION

int RequestBroker::RequestToInvokeInTaskExecutor(std::function<void(void*)> function,
                                                 void* userData) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    m_invoker->invokeTask([function, userData] { function(userData); });
    return 0;
}
