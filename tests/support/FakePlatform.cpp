#include "tests/support/FakePlatform.h"

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <dlog.h>
#include <sound_manager_tv.h>
#include <system_info.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <functional>
#include <map>
#include <mutex>
#include <regex>
#include <shared_mutex>
#include <utility>

namespace {

struct Entry {
    bool isCall;
    fake_platform::Line line;
};

using Slots = std::map<std::string, fake_platform::Slot, std::less<>>;

/// Returns a slot for every event, so that setting a callback allocates no memory.
Slots allSlots() {
    Slots slots;
#define EVENT(source, type, value, subscribe, unsubscribe, setFunction, unsetFunction, Callback, \
              types)                                                                             \
    slots[#setFunction];
#include "tests/support/EventTable.def"
#undef EVENT
    return slots;
}

struct State {
    std::vector<Entry> entries;
    Slots slots = allSlots();
    std::function<void(const fake_platform::Line&)> observer;
    std::function<void()> deliveryObserver;
    int result = 0;
    int productTypeResult = 0;
    int productType = 0;
};

std::mutex g_mutex;
State g_state;
std::atomic<bool> g_recording = true;
std::atomic<bool> g_serialising = false;
std::shared_mutex g_delivery;

std::unique_lock<std::shared_mutex> awaitDeliveries() {
    return g_serialising ? std::unique_lock(g_delivery) : std::unique_lock<std::shared_mutex>();
}

int record(int logId, int priority, const char* tag, const char* format, va_list arguments) {
    if (!g_recording) {
        return 0;
    }
    char text[4096];
    const int length = vsnprintf(text, sizeof text, format, arguments);
    const fake_platform::Line line{logId, priority, tag, text};
    std::function<void(const fake_platform::Line&)> observer;
    {
        const std::lock_guard lock(g_mutex);
        g_state.entries.push_back({false, line});
        observer = g_state.observer;
    }
    if (observer) {
        observer(line);
    }
    return length;
}

int call(const char* function) {
    const std::lock_guard lock(g_mutex);
    if (g_recording) {
        g_state.entries.push_back({true, {0, 0, "", function}});
    }
    return g_state.result;
}

int set(const char* function, void (*callback)(), void* userData) {
    const auto alone = awaitDeliveries();
    {
        const std::lock_guard lock(g_mutex);
        fake_platform::Slot& slot = g_state.slots.find(function)->second;
        slot.callback = callback;
        slot.userData = userData;
        ++slot.sets;
    }
    return call(function);
}

int unset(const char* setFunction, const char* function) {
    const auto alone = awaitDeliveries();
    {
        const std::lock_guard lock(g_mutex);
        fake_platform::Slot& slot = g_state.slots.find(setFunction)->second;
        slot.callback = nullptr;
        slot.userData = nullptr;
        ++slot.unsets;
    }
    return call(function);
}

std::string normalised(const std::string& text) {
    static const std::regex line(R"(\(\d+\)( >|  | \[|\]))");
    static const std::regex pointer("0x[0-9a-f]+");
    return std::regex_replace(std::regex_replace(text, line, "(#)$1"), pointer, "0x#");
}

}  // namespace

namespace fake_platform {

void reset() {
    const std::lock_guard lock(g_mutex);
    g_state = State{};
    g_recording = true;
    g_serialising = false;
}

void setResult(int result) {
    const std::lock_guard lock(g_mutex);
    g_state.result = result;
}

void setProductType(int result, int value) {
    const std::lock_guard lock(g_mutex);
    g_state.productTypeResult = result;
    g_state.productType = value;
}

void onLog(std::function<void(const Line&)> observer) {
    const std::lock_guard lock(g_mutex);
    g_state.observer = std::move(observer);
}

void recordNothing() {
    g_recording = false;
}

void serialiseDeliveries() {
    g_serialising = true;
}

std::shared_lock<std::shared_mutex> beginDelivery() {
    return g_serialising ? std::shared_lock(g_delivery) : std::shared_lock<std::shared_mutex>();
}

void onDelivery(std::function<void()> observer) {
    const std::lock_guard lock(g_mutex);
    g_state.deliveryObserver = std::move(observer);
}

void announceDelivery() {
    std::function<void()> observer;
    {
        const std::lock_guard lock(g_mutex);
        observer = g_state.deliveryObserver;
    }
    if (observer) {
        observer();
    }
}

std::vector<Line> lines() {
    const std::lock_guard lock(g_mutex);
    std::vector<Line> found;
    for (const Entry& entry : g_state.entries) {
        if (!entry.isCall) {
            found.push_back(entry.line);
        }
    }
    return found;
}

std::vector<std::string> calls() {
    const std::lock_guard lock(g_mutex);
    std::vector<std::string> found;
    for (const Entry& entry : g_state.entries) {
        if (entry.isCall) {
            found.push_back(entry.line.text);
        }
    }
    return found;
}

std::vector<std::string> transcript() {
    const std::lock_guard lock(g_mutex);
    std::vector<std::string> found;
    for (const Entry& entry : g_state.entries) {
        if (entry.isCall) {
            found.push_back("call " + entry.line.text);
            continue;
        }
        static const std::map<int, std::string> letters{{3, "D"}, {4, "I"}, {6, "E"}};
        found.push_back(letters.at(entry.line.priority) + " " + entry.line.tag + " " +
                        normalised(entry.line.text));
    }
    return found;
}

int count(const std::string& part) {
    const std::vector<Line> all = lines();
    return static_cast<int>(std::count_if(all.begin(), all.end(), [&](const Line& line) {
        return line.text.find(part) != std::string::npos;
    }));
}

Slot slot(const std::string& setFunction) {
    const std::lock_guard lock(g_mutex);
    return g_state.slots.at(setFunction);
}

int callbacksSet() {
    const std::lock_guard lock(g_mutex);
    return static_cast<int>(
        std::count_if(g_state.slots.begin(), g_state.slots.end(),
                      [](const auto& entry) { return entry.second.callback != nullptr; }));
}

}  // namespace fake_platform

int __dlog_print(int log_id, int prio, const char* tag, const char* fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    const int length = record(log_id, prio, tag, fmt, arguments);
    va_end(arguments);
    return length;
}

int dlog_print(int prio, const char* tag, const char* fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    const int length = record(fake_platform::NO_LOG_ID, prio, tag, fmt, arguments);
    va_end(arguments);
    return length;
}

int system_info_get_custom_int(const char* key, int* value) {
    call((std::string("system_info_get_custom_int ") + key).c_str());
    const std::lock_guard lock(g_mutex);
    if (g_state.productTypeResult == 0) {
        *value = g_state.productType;
    }
    return g_state.productTypeResult;
}

int bt_product_init() {
    return call(__FUNCTION__);
}
int bt_product_deinit() {
    return call(__FUNCTION__);
}
int bt_audio_initialize() {
    return call(__FUNCTION__);
}
int bt_audio_deinitialize() {
    return call(__FUNCTION__);
}

#define EVENT(source, type, value, subscribe, unsubscribe, setFunction, unsetFunction, Callback, \
              types)                                                                             \
    int setFunction(Callback callback, void* userData) {                                         \
        return set(#setFunction, reinterpret_cast<void (*)()>(callback), userData);              \
    }                                                                                            \
    int unsetFunction() {                                                                        \
        return unset(#setFunction, #unsetFunction);                                              \
    }
#include "tests/support/EventTable.def"
#undef EVENT
