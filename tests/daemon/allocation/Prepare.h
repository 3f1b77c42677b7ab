// A workaround for a limit of ThreadSanitizer.
#pragma once

#include "daemon/src/Callback/CallbackDelegator.h"

/// Under ThreadSanitizer, creates the delegator while no allocation fails: the sanitizer's
/// replacement of pthread_once hangs forever after a function that it called has thrown.
inline void prepareDelegator() {
#ifdef __SANITIZE_THREAD__
    Singleton<CallbackDelegator>::getInstance();
#endif
}
