// Loads, initialises and unloads 64 plugins.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "daemon/src/CommonDaemon.h"

namespace {

void corvane(benchmark::State& state) {
    for (auto step : state) {
        CommonDaemon daemon;
        daemon.start();
        daemon.terminate();
    }
}

void bareLoader(benchmark::State& state) {
    using Init = int (*)(void*);
    using Deinit = void (*)();
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(PLUGIN_DIRECTORY)) {
        paths.push_back(entry.path());
    }
    std::vector<void*> handles;
    for (auto step : state) {
        for (const std::string& path : paths) {
            handles.push_back(dlopen(path.c_str(), RTLD_LAZY));
            reinterpret_cast<Init>(dlsym(handles.back(), "PLUGIN_INIT"))(nullptr);
        }
        for (void* const handle : handles) {
            reinterpret_cast<Deinit>(dlsym(handle, "PLUGIN_DEINIT"))();
            dlclose(handle);
        }
        handles.clear();
    }
}

}  // namespace

BENCHMARK(corvane)->Name("plugins/corvane")->Unit(benchmark::kMicrosecond);
BENCHMARK(bareLoader)->Name("plugins/loader")->Unit(benchmark::kMicrosecond);
