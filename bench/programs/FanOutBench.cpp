// Delivers one event to several idle subscribers.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/subjects/Budget.h"
#include "bench/subjects/DaemonSide.h"
#include "bench/subjects/Record.h"
#include "bench/subjects/Rivals.h"

namespace {

template <typename Emitter>
void statesTo(benchmark::State& state) {
    std::vector<Subscriber> subscribers(static_cast<std::size_t>(state.range(0)));
    Emitter emitter;
    for (Subscriber& subscriber : subscribers) {
        emitter.subscribe(&Subscriber::onState, &subscriber);
    }
    for (auto step : state) {
        emitter.emit(0, BT_ADAPTER_STATE_ON);
    }
    for (const Subscriber& subscriber : subscribers) {
        if (subscriber.events != static_cast<long>(state.iterations())) {
            state.SkipWithError("an event was lost");
        }
    }
}

void onCopy(int, const DeviceCopy& device, void* self) {
    static_cast<Subscriber*>(self)->events += device.name.empty() ? 0 : 1;
}

void recordTo(benchmark::State& state) {
    std::vector<Subscriber> subscribers(static_cast<std::size_t>(state.range(0)));
    Product<bt_device_bond_created_cb> product;
    for (Subscriber& subscriber : subscribers) {
        product.subscribe(&Subscriber::onBond, &subscriber);
    }
    LentDevice device;
    for (auto step : state) {
        product.emit(0, device.get());
    }
}

template <typename Emitter>
void recordToRival(benchmark::State& state) {
    std::vector<Subscriber> subscribers(static_cast<std::size_t>(state.range(0)));
    Emitter emitter;
    for (Subscriber& subscriber : subscribers) {
        emitter.subscribe(&onCopy, &subscriber);
    }
    LentDevice device;
    for (auto step : state) {
        // What the platform lent is gone when the event has been emitted.
        emitter.emit(0, DeviceCopy(*device.get()));
    }
}

using States = Product<bt_adapter_state_changed_cb>;

}  // namespace

BENCHMARK(statesTo<States>)->Name("fan-out/corvane")->Arg(1)->Arg(8)->Arg(32);
BENCHMARK(statesTo<rivals::SignalAndStrand<int, bt_adapter_state_e>>)
    ->Name("fan-out/signals2+strand")
    ->Arg(1)
    ->Arg(8)
    ->Arg(32);
BENCHMARK(statesTo<rivals::SigcAndQueue<int, bt_adapter_state_e>>)
    ->Name("fan-out/sigc+queue")
    ->Arg(1)
    ->Arg(8)
    ->Arg(32);
BENCHMARK(statesTo<rivals::VectorAndQueue<int, bt_adapter_state_e>>)
    ->Name("fan-out/vector+queue")
    ->Arg(1)
    ->Arg(8)
    ->Arg(32);
BENCHMARK(statesTo<Budget<int, bt_adapter_state_e>>)
    ->Name("fan-out/budget")
    ->Arg(1)
    ->Arg(8)
    ->Arg(32);
BENCHMARK(recordTo)->Name("record/corvane")->Arg(8);
BENCHMARK(recordToRival<rivals::SignalAndStrand<int, DeviceCopy>>)
    ->Name("record/signals2+strand")
    ->Arg(8);
