// Measures one delivery with growing numbers of subscribers and of delivering threads.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "bench/subjects/DaemonSide.h"
#include "daemon/src/Callback/BluetoothCallback.h"

namespace {

void toSubscribers(benchmark::State& state) {
    std::vector<Subscriber> subscribers(static_cast<std::size_t>(state.range(0)));
    Product<bt_adapter_state_changed_cb> product;
    for (Subscriber& subscriber : subscribers) {
        product.subscribe(&Subscriber::onState, &subscriber);
    }
    for (auto step : state) {
        product.emit(0, BT_ADAPTER_STATE_ON);
    }
    state.SetItemsProcessed(static_cast<long>(state.iterations()) * state.range(0));
}

struct Lane {
    Subscriber subscriber;
    TaskInvokerImpl invoker;
    BtAdapterStateChangedCb source;

    Lane() { source.add(&invoker, &Subscriber::onState, &subscriber); }
};

// Each thread delivers an event of its own to a plugin of its own.
void onThreads(benchmark::State& state) {
    static std::vector<std::unique_ptr<Lane>> lanes;
    if (state.thread_index() == 0) {
        for (int i = 0; i < state.threads(); ++i) {
            lanes.push_back(std::make_unique<Lane>());
        }
    }
    for (auto step : state) {
        const EpochGuard guard;
        lanes[static_cast<std::size_t>(state.thread_index())]->source.onCallback(
            0, BT_ADAPTER_STATE_ON);
    }
    state.SetItemsProcessed(static_cast<long>(state.iterations()));
    if (state.thread_index() == 0) {
        lanes.clear();
    }
}

}  // namespace

BENCHMARK(toSubscribers)->Name("scale/subscribers")->Arg(1)->Arg(8)->Arg(64)->Arg(512);
BENCHMARK(onThreads)->Name("scale/threads")->Threads(1)->Threads(2)->Threads(4)->UseRealTime();
