// A workaround for a limit of ThreadSanitizer.
#pragma once

#include "daemon/src/Callback/CallbackDelegator.h"

/// How many allocations prepareDelegator takes out of the series that fail in turn.
#ifdef __SANITIZE_THREAD__
inline constexpr long PREPARED_ALLOCATIONS = 1;
#else
inline constexpr long PREPARED_ALLOCATIONS = 0;
#endif

/// Under ThreadSanitizer, creates the delegator while no allocation fails: the sanitizer's
/// replacement of pthread_once hangs forever after a function that it called has thrown.
inline void prepareDelegator() {
    if constexpr (PREPARED_ALLOCATIONS > 0) {
        Singleton<CallbackDelegator>::getInstance();
    }
}
