// Hands a task of two words to an idle receiver.
#include <benchmark/benchmark.h>

#include "bench/subjects/Rivals.h"
#include "taskExecutor/TaskInvokerImpl.h"

namespace {

void corvane(benchmark::State& state) {
    TaskInvokerImpl invoker;
    long done = 0;
    long step = 1;
    for (auto turn : state) {
        invoker.invokeTask([&done, &step] { done += step; });
    }
    benchmark::DoNotOptimize(done);
}

void strand(benchmark::State& state) {
    const rivals::Strand strand{boost::asio::system_executor()};
    long done = 0;
    long step = 1;
    for (auto turn : state) {
        boost::asio::dispatch(strand, [&done, &step] { done += step; });
    }
    benchmark::DoNotOptimize(done);
}

}  // namespace

BENCHMARK(corvane)->Name("hand-off/corvane");
BENCHMARK(strand)->Name("hand-off/strand");
