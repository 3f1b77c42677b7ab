// What a thread sanitizer can't do itself.
#pragma once

#include "daemon/src/Callback/CallbackDelegator.h"

/// Under ThreadSanitizer makes the delegator with memory at hand: its stand-in for
/// pthread_once hangs for good once a function that it called has thrown.
inline void prepareDelegator() {
#ifdef __SANITIZE_THREAD__
    Singleton<CallbackDelegator>::getInstance();
#endif
}
