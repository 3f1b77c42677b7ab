// Records the subscriptions of the plugin.
#include "tools/corvane/check/runner/Subscriptions.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string_view>

#include "tools/corvane/check/runner/Report.h"

namespace corvane::check {

namespace {

struct Row {
    CallbackType type;
    const char* typeName;
    const char* subscribe;
    const char* unsubscribe;
    int (RequestBroker::*undo)();
};

constexpr Row ROWS[] = {
#define BROKER_OPERATION(subscribe, unsubscribe, CallbackFunction, type, Source) \
    {type, #type, #subscribe, #unsubscribe, &RequestBroker::unsubscribe},
#include "daemon/src/broker/BrokerOperations.def"
#undef BROKER_OPERATION
};

const Row& rowOf(CallbackType type) {
    const auto* const found = std::ranges::find(ROWS, type, &Row::type);
    if (found == std::end(ROWS)) {
        throw std::out_of_range("no operation for this event");
    }
    return *found;
}

std::string eventName(const Row& row) {
    std::string name = row.typeName;
    std::ranges::transform(name, name.begin(), [](unsigned char letter) {
        return letter == '_' ? '-' : static_cast<char>(std::tolower(letter));
    });
    return name;
}

bool isProfile(const Row& row) {
    return std::string_view(row.subscribe).ends_with("Initialize");
}

}  // namespace

bool Subscriptions::subscribe(CallbackType type, bool hasCallback) {
    const auto& row = rowOf(type);
    if (!hasCallback) {
        report::finding("null-callback", std::string(row.subscribe) + "(nullptr, ...)");
        return false;
    }
    const std::lock_guard lock(m_mutex);
    if (++m_counts[type] == 2) {
        report::finding("subscribed-twice", row.subscribe);
    }
    return true;
}

void Subscriptions::unsubscribe(CallbackType type) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_counts.find(type);
    if (found == m_counts.end()) {
        report::finding("not-subscribed", rowOf(type).unsubscribe);
    } else {
        found->second = 0;
    }
}

std::vector<std::string> Subscriptions::events() const {
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> names;
    for (const auto& [type, count] : m_counts) {
        if (count > 0) {
            names.push_back(eventName(rowOf(type)));
        }
    }
    return names;
}

void Subscriptions::reportAndUndo(RequestBroker& broker) {
    const std::lock_guard lock(m_mutex);
    for (auto& [type, count] : m_counts) {
        if (count == 0) {
            continue;
        }
        const auto& row = rowOf(type);
        report::finding(isProfile(row) ? "leftover-profiles" : "leftover-subscriptions",
                        std::string(row.subscribe) + " without " + row.unsubscribe);
        (broker.*row.undo)();
        count = 0;
    }
}

}  // namespace corvane::check
