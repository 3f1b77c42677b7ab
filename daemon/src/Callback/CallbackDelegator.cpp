#include "daemon/src/Callback/CallbackDelegator.h"

CallbackDelegator::CallbackDelegator() {
    init();
}

CallbackDelegator::~CallbackDelegator() {
    deinit();
}

void CallbackDelegator::init() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
}

void CallbackDelegator::deinit() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
}

std::map<CallbackType, std::unique_ptr<ICallback>>& CallbackDelegator::getCallbackList(
    CallbackType) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    return m_callbacks;
}
