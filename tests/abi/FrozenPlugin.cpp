// A plugin of a frozen release. It is compiled with the headers, the event table and the record
// descriptions of that release, not with the current ones.
#include "tests/abi/FrozenPlugin.h"

#include <IRequestBroker.h>

#include <cstddef>
#include <string>
#include <tuple>
#include <utility>

#include "SampleArguments.h"

namespace {

template <typename... All>
void receive(All... all) {
    const auto arguments = std::tie(all...);
    [&arguments]<std::size_t... Index>(std::index_sequence<Index...>) {
        std::string text;
        ((text += describe(std::get<Index>(arguments)) + " "), ...);
        auto* listener = static_cast<FrozenListener*>(std::get<sizeof...(All) - 1>(arguments));
        listener->receive(listener, text.data(), text.size());
    }
    (std::make_index_sequence<sizeof...(All) - 1>{});
}

IRequestBroker* brokerOf(void* broker) {
    return static_cast<IRequestBroker*>(broker);
}

int requestWork(void* broker, FrozenListener* listener) {
    return brokerOf(broker)->RequestToInvokeInTaskExecutor(
        [](void* userData) {
            auto* given = static_cast<FrozenListener*>(userData);
            const std::string event = "own work";
            given->receive(given, event.data(), event.size());
        },
        listener);
}

constexpr FrozenOperation OPERATIONS[] = {
#define EVENT(source, type, value, subscribe, unsubscribe, set, unset, Callback, types) \
    {#subscribe, #set,                                                                  \
     [](void* broker, FrozenListener* listener) {                                       \
         return brokerOf(broker)->subscribe(static_cast<Callback>(receive), listener);  \
     }},                                                                                \
        {#unsubscribe, #unset,                                                          \
         [](void* broker, FrozenListener*) { return brokerOf(broker)->unsubscribe(); }},
#include "tests/support/EventTable.def"
#undef EVENT
    {"RequestToInvokeInTaskExecutor", nullptr, requestWork},
};

}  // namespace

extern "C" __attribute__((visibility("default"))) const FrozenOperation* FROZEN_OPERATIONS(
    int* count) {
    *count = static_cast<int>(std::size(OPERATIONS));
    return OPERATIONS;
}
