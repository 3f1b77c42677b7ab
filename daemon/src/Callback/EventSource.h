// What the event sources share: the members that differ in names only, and the task that owns
// copies of an event's arguments and passes pointers into them to a plugin.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "daemon/src/Callback/CallbackImpl.h"
#include "taskExecutor/ShortLived.h"

namespace event_source {

// What a plugin's callback gets for a copied argument: a pointer into the copy, or the value.
template <typename T>
T asArgument(T value) {
    return value;
}
inline char* asArgument(std::string& text) {
    return text.data();
}
template <typename Record>
Record* asArgument(const std::shared_ptr<Record>& record) {
    return record.get();
}

// std::function allocates a callable that is too large for it with the callable's own operator new.
template <typename Call>
struct ShortLivedCall : Call, ShortLived {
    explicit ShortLivedCall(Call call) : Call(std::move(call)) {}
};

/// Returns a task that owns a copy of each argument and calls `fn` with the copies.
template <typename CallbackFunction, typename... Args>
std::function<void()> makeTask(CallbackFunction fn, void* userData, const Args&... args) {
    return ShortLivedCall(
        [fn, userData, ... copies = args]() mutable { fn(asArgument(copies)..., userData); });
}

}  // namespace event_source

// The members of an event source that differ in names only. The signature in end is written out
// because the log names the end of a source after its destructor.
#define EVENT_SOURCE(Class, setFunction, unsetFunction)                        \
public:                                                                        \
    Class() {                                                                  \
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);                     \
    }                                                                          \
    ~Class() override {                                                        \
        Class::end();                                                          \
    }                                                                          \
    void registerCallback() override {                                         \
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);                     \
        setFunction([](auto... args) { onPlatformCallback(args...); },         \
                    static_cast<CallbackImpl*>(this));                         \
        m_isRegistered = true;                                                 \
    }                                                                          \
    void unregisterCallback() override {                                       \
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);                     \
        unsetFunction();                                                       \
    }                                                                          \
                                                                               \
private:                                                                       \
    void end() override {                                                      \
        if (!std::exchange(m_hasEnded, true)) {                                \
            ApiTracker tracker("virtual " #Class "::~" #Class "()", __LINE__); \
            unregisterCallback();                                              \
        }                                                                      \
    }
