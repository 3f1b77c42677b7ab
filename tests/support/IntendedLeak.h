// Marks what a test leaks because the product does so on purpose: the leak detector
// overlooks what is allocated while one of these lives.
#pragma once

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

/// Threads: concerns the one that made it.
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
