// Two threads queue tasks at one receiver, whose queue has no limit.
#include <benchmark/benchmark.h>

#include <atomic>
#include <memory>

#include "bench/subjects/Rivals.h"
#include "taskExecutor/TaskExecutor.h"

namespace {

std::shared_ptr<TaskExecutor> g_executor;

void corvane(benchmark::State& state) {
    static std::atomic<long> done;
    if (state.thread_index() == 0) {
        g_executor = TaskExecutor::Create();
        g_executor->Initiate(0, 0);
    }
    for (auto step : state) {
        g_executor->Schedule([] { done.fetch_add(1, std::memory_order_relaxed); });
    }
    if (state.thread_index() == 0) {
        g_executor->Schedule([] {});
        g_executor.reset();
    }
}

void strand(benchmark::State& state) {
    static std::atomic<long> done;
    static const rivals::Strand strand{boost::asio::system_executor()};
    for (auto step : state) {
        boost::asio::dispatch(strand, [] { done.fetch_add(1, std::memory_order_relaxed); });
    }
}

}  // namespace

BENCHMARK(corvane)->Name("contended/corvane")->Threads(2)->UseRealTime();
BENCHMARK(strand)->Name("contended/strand")->Threads(2)->UseRealTime();
