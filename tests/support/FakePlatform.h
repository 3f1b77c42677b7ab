// The platform's C interfaces, recorded: what was called, what was logged, and the one
// callback of each kind. Link it in place of the platform libraries.
#pragma once

#include <functional>
#include <shared_mutex>
#include <string>
#include <vector>

/// Threads: any; reset only while no other thread uses the platform.
namespace fake_platform {

constexpr int NO_LOG_ID = -1;  // dlog_print takes none

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

/// What every set, unset, initialise and deinitialise function returns. 0 after reset.
void setResult(int result);
/// What the query of the product type returns and stores. 0 and 0 after reset.
void setProductType(int result, int value);
/// Called for each line, on the thread that logs it, without a lock.
void onLog(std::function<void(const Line&)> observer);
/// Stops recording, for runs of millions of lines and for those that count allocations: the
/// platform makes none of its own then.
void recordNothing();

std::vector<Line> lines();
/// The names of the functions called, without the log's, in order.
std::vector<std::string> calls();
/// Lines and calls in order: "<priority letter> <tag> <text>" and "call <function>".
/// Line numbers stand as "#", pointers as "0x#".
std::vector<std::string> transcript();
/// How often `part` occurs in the lines' texts.
int count(const std::string& part);

/// The state behind a set (or initialise) function.
Slot slot(const std::string& setFunction);

/// Lets every set and unset wait for the deliveries under way, as a platform does that
/// serialises them; a callback must not subscribe or unsubscribe then.
void serialiseDeliveries();
std::shared_lock<std::shared_mutex> beginDelivery();

/// Called on the delivering thread immediately before each callback; none after reset.
void onDelivery(std::function<void()> observer);
void announceDelivery();

/// Calls what is set, as the platform would, on this thread. False if nothing is.
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

/// How many callbacks of all kinds are set.
int callbacksSet();

}  // namespace fake_platform
