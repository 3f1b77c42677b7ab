// A fake of the platform's C interfaces, linked instead of the platform libraries. It records the
// calls, the log lines, and the callback that is set for each event.
#pragma once

#include <functional>
#include <shared_mutex>
#include <string>
#include <vector>

/// Threads: any, except that reset must not run while another thread uses the platform.
namespace fake_platform {

constexpr int NO_LOG_ID = -1;  // logged by dlog_print, which has no log id

struct Line {
    int logId;
    int priority;
    std::string tag;
    std::string text;
};

struct Slot {
    void (*callback)() = nullptr;
    void* userData = nullptr;
    int sets = 0;
    int unsets = 0;
};

void reset();

/// Sets the result of every set, unset, initialise and deinitialise function. 0 after reset.
void setResult(int result);
/// Sets what the query of the product type returns and stores. 0 and 0 after reset.
void setProductType(int result, int value);
/// Sets a function that is called for each log line, on the thread that logs it, without a lock.
void onLog(std::function<void(const Line&)> observer);
/// Stops recording. The fake then allocates no memory. For tests that log millions of lines or
/// count allocations.
void recordNothing();

std::vector<Line> lines();
/// Returns the names of the called functions in order, without those of the log.
std::vector<std::string> calls();
/// Returns log lines and calls in order: "<priority letter> <tag> <text>" and "call <function>".
/// Line numbers are replaced by "#", pointers by "0x#".
std::vector<std::string> transcript();
/// Returns the number of log lines whose text contains `part`.
int count(const std::string& part);

/// Returns the state of the callback that `setFunction` sets (or initialises).
Slot slot(const std::string& setFunction);

/// Makes every set and unset function wait until no delivery is running, as a platform with
/// serialised deliveries does. A callback must not subscribe or unsubscribe then: it would
/// deadlock.
void serialiseDeliveries();
std::shared_lock<std::shared_mutex> beginDelivery();

/// Sets a function that is called on the delivering thread immediately before each callback. None
/// after reset.
void onDelivery(std::function<void()> observer);
void announceDelivery();

/// Calls the callback on the calling thread, as the platform does. Returns false if none is set.
template <typename... Args>
bool deliver(const std::string& setFunction, Args... args) {
    const std::shared_lock delivery = beginDelivery();
    const Slot current = slot(setFunction);
    if (current.callback == nullptr) {
        return false;
    }
    announceDelivery();
    reinterpret_cast<void (*)(Args..., void*)>(current.callback)(args..., current.userData);
    return true;
}

/// Returns the number of callbacks that are set.
int callbacksSet();

}  // namespace fake_platform
