// Starts a second, idle thread: in a process with a single thread, locks and reference counts take
// short cuts that the daemon never takes.
#include <benchmark/benchmark.h>

#include <boost/version.hpp>
#include <future>
#include <thread>

int main(int argc, char** argv) {
    std::promise<void> end;
    std::thread parked([ended = end.get_future()] { ended.wait(); });
    benchmark::AddCustomContext("boost", BOOST_LIB_VERSION);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    end.set_value();
    parked.join();
    return 0;
}
