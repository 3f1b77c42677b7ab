// What the event sources share: the members that differ in names only, and the task
// that lends owned copies of an event's arguments to a plugin.
#pragma once

#include <functional>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

#include "daemon/src/Callback/CallbackImpl.h"
#include "taskExecutor/ShortLived.h"

namespace event_source {

template <typename T>
T lend(T value) {
    return value;
}
inline char* lend(std::string& text) {
    return text.data();
}
template <typename Record>
Record* lend(const std::shared_ptr<Record>& record) {
    return record.get();
}

// std::function makes and deletes what it doesn't hold itself by the class's own operators.
template <typename Call>
struct ShortLivedCall : Call, ShortLived {
    explicit ShortLivedCall(Call call) : Call(std::move(call)) {}
};

/// A task that owns a copy of each argument and calls `fn` with them.
template <typename CallbackFunction, typename... Args>
std::function<void()> makeTask(CallbackFunction fn, void* userData, const Args&... args) {
    return ShortLivedCall(
        [fn, userData, ... copies = args]() mutable { fn(lend(copies)..., userData); });
}

}  // namespace event_source

// Constructor, destructor, registerCallback and unregisterCallback of an event source.
// A source that is deleted ends for the platform and the log at once; see
// CallbackImpl. noexcept is explicit because g++ does not infer it here. The plain operator delete
// serves a constructor that throws.
#define EVENT_SOURCE(Class, setFunction, unsetFunction)                             \
public:                                                                             \
    Class() {                                                                       \
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);                          \
    }                                                                               \
    ~Class() override {                                                             \
        end("virtual " #Class "::~" #Class "()", __LINE__);                         \
    }                                                                               \
    static void operator delete(Class* source, std::destroying_delete_t) noexcept { \
        source->end("virtual " #Class "::~" #Class "()", __LINE__);                 \
        source->release();                                                          \
    }                                                                               \
    static void operator delete(void* storage) {                                    \
        ::operator delete(storage);                                                 \
    }                                                                               \
    void registerCallback() override {                                              \
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);                          \
        setFunction([](auto... args) { onPlatformCallback(args...); },              \
                    static_cast<CallbackImpl*>(this));                              \
    }                                                                               \
    void unregisterCallback() override {                                            \
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);                          \
        unsetFunction();                                                            \
    }                                                                               \
                                                                                    \
private:
