// Marks the intended leaks of the product in a test. The leak detector ignores the memory that is
// allocated while such an object exists.
#pragma once

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

/// Threads: affects only the thread that created it.
class IntendedLeak {
public:
#ifdef __SANITIZE_ADDRESS__
    IntendedLeak() {
        __lsan_disable();
    }
    ~IntendedLeak() {
        __lsan_enable();
    }
#else
    IntendedLeak() {}
    ~IntendedLeak() {}
#endif
    IntendedLeak(const IntendedLeak&) = delete;
    IntendedLeak& operator=(const IntendedLeak&) = delete;
};
