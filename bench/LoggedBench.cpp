// With every line formatted and kept in a file.
#include <benchmark/benchmark.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <memory>
#include <vector>

#include "bench/Product.h"
#include "bench/Rivals.h"

namespace {

constexpr int SUBSCRIBERS = 8;

std::shared_ptr<spdlog::logger> fileLogger() {
    static const auto logger = [] {
        auto made = spdlog::basic_logger_mt("QVX", "spdlog.log", true);
        made->set_pattern("%H:%M:%S.%e %t %L %n: %v");
        made->set_level(spdlog::level::debug);
        return made;
    }();
    return logger;
}

void fanOut(benchmark::State& state) {
    std::vector<Subscriber> subscribers(SUBSCRIBERS);
    Product<bt_adapter_state_changed_cb> product;
    for (Subscriber& subscriber : subscribers) {
        product.subscribe(&Subscriber::onState, &subscriber);
    }
    for (auto step : state) {
        product.emit(0, BT_ADAPTER_STATE_ON);
    }
}

/// The lines of one delivery, in the words of the daemon.
class TracedSubscriber : public Subscriber {
public:
    static void onState(int result, bt_adapter_state_e value, void* self) {
        auto& log = *fileLogger();
        log.info("CallbackImpl.h: onCallback({}) > invoker : {}", 100, self);
        for (const char* const signature :
             {"virtual std::function<void()> BtAdapterStateChangedCb::getInvokingTask("
              "bt_adapter_state_changed_cb, int, bt_adapter_state_e, void*)",
              "virtual void TaskInvokerImpl::invokeTask(const ITaskInvoker::Task&)"}) {
            log.debug("log.h: ApiTracker({}) > IN >> [{}({})]", 48, signature, 70);
            log.debug("log.h: ~ApiTracker({}) > OUT << [{}({})]", 50, signature, 70);
        }
        for (const char* const operation :
             {"InvokeTask", "_InvokeJob", "_ProcessJob", "_ProcessTask"}) {
            log.debug("TPLContext.h : {}({}) [{}] > Entered", operation, 200, self);
        }
        for (const char* const step : {"TaskJob created", "task is queued", "task is invoked",
                                       "task is poped", "Processing Task", "TaskJob destroyed"}) {
            log.debug("TPLContext.h : {}({})  {}", "_InvokeJob", 200, step);
        }
        Subscriber::onState(result, value, self);
        for (const char* const operation :
             {"_ProcessTask", "_ProcessJob", "_InvokeJob", "InvokeTask"}) {
            log.debug("TPLContext.h : {}({}) [{}]> Left", operation, 200, self);
        }
    }
};

void fanOutOfRival(benchmark::State& state) {
    std::vector<TracedSubscriber> subscribers(SUBSCRIBERS);
    rivals::SignalAndStrand<int, bt_adapter_state_e> emitter;
    for (TracedSubscriber& subscriber : subscribers) {
        emitter.subscribe(&TracedSubscriber::onState, &subscriber);
    }
    for (auto step : state) {
        emitter.emit(0, BT_ADAPTER_STATE_ON);
    }
}

void line(benchmark::State& state) {
    for (auto step : state) {
        __dlog_print(DLOG_BUFFER_MAIN, DLOG_PRIORITY_DEBUG, "QVX", "%s: %s(%d) > IN >> [%s(%d)]",
                     "log.h", "ApiTracker", 48, "void CommonDaemon::start()", 22);
    }
}

void lineOfRival(benchmark::State& state) {
    auto& log = *fileLogger();
    for (auto step : state) {
        log.debug("{}: {}({}) > IN >> [{}({})]", "log.h", "ApiTracker", 48,
                  "void CommonDaemon::start()", 22);
    }
}

}  // namespace

BENCHMARK(fanOut)->Name("logged/corvane");
BENCHMARK(fanOutOfRival)->Name("logged/signals2+strand+spdlog");
BENCHMARK(line)->Name("line/libdlog");
BENCHMARK(lineOfRival)->Name("line/spdlog");
