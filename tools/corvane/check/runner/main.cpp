// Runs one plugin in place of the daemon. `corvane check` starts this program in a temporary
// directory. It writes messages to the descriptor FD.
//     corvane-check-runner open FILE FD          opens FILE with the loader
//     corvane-check-runner run NAME FD SLOW_MS   runs plugins/NAME from loading to unloading
//     corvane-check-runner drop NAME FD          drops the tasks that its callbacks request
#include <Ecore.h>
#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <dlfcn.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>

#include "daemon/src/Callback/CallbackDelegator.h"
#include "taskExecutor/MainThreadInvoker.h"
#include "tools/corvane/check/runner/CrashHandler.h"
#include "tools/corvane/check/runner/Deliverer.h"
#include "tools/corvane/check/runner/DroppingPlugin.h"
#include "tools/corvane/check/runner/PluginRun.h"
#include "tools/corvane/check/runner/Report.h"
#include "tools/corvane/check/runner/RunnerProtocol.h"
#include "tools/corvane/check/runner/Subscriptions.h"

namespace {

using namespace corvane::check;

void limit(decltype(RLIMIT_DATA) resource, rlim_t most) {
    rlimit limits{};
    getrlimit(resource, &limits);
    limits.rlim_max = std::min(limits.rlim_max, most);
    limits.rlim_cur = std::min(limits.rlim_cur, limits.rlim_max);
    setrlimit(resource, &limits);
}

// The limits hold for this process and its children, and can't be raised again.
void limitPlugin() {
    constexpr rlim_t mebibyte = 1 << 20;
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0,
          0);  // otherwise the command might not be allowed to kill its children
    limit(RLIMIT_FSIZE, 128 * mebibyte);
// A sanitizer reserves terabytes of address space.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    limit(RLIMIT_DATA, 2048 * mebibyte);
#endif
}

// Opens the library as the daemon does.
void open(const std::string& path) {
    report::step("the opening of the library");
    if (void* const handle = dlopen(path.c_str(), RTLD_LAZY)) {
        report::step("the unloading of the library");
        dlclose(handle);
    } else {
        report::fact("refusal", dlerror());
    }
    report::done();
}

void startPlatform() {
    if (ecore_init() == 0) {
        throw std::runtime_error("the main loop can't be initialised");
    }
    bt_product_init();
    bt_audio_initialize();
    MainThreadInvoker::setMainThreadId(std::this_thread::get_id());
}

void run(const std::string& name, std::chrono::milliseconds slowLimit) {
    startPlatform();
    // ThreadSanitizer starts a background thread with the first one; it isn't the plugin's.
    std::thread([] {}).join();
    {
        PluginRun pluginRun(name, slowLimit);
        if (const pid_t thread = pluginRun.run()) {
            report::done();
            // The thread reports its stack, and the command kills the process. The thread may block
            // the signal, so don't wait forever.
            syscall(SYS_tgkill, getpid(), thread, HANG_SIGNAL);
            sleep(1);
            _exit(EXIT_SUCCESS);
        }
    }
    Singleton<CallbackDelegator>::getInstance();
    Singleton<CallbackDelegator>::instance().reset();
    bt_product_deinit();
    bt_audio_deinitialize();
    ecore_shutdown();
    report::done();
}

// PLUGIN_DEINIT isn't called: it may wait for a dropped task.
[[noreturn]] void drop(const std::string& name) {
    startPlatform();
    Subscriptions subscriptions;
    DroppingPlugin plugin;
    plugin.create(name, subscriptions);
    report::step("PLUGIN_INIT");
    try {
        plugin.load();
        Deliverer(plugin, subscriptions).deliverAll();
    } catch (const std::exception&) {
        // PLUGIN_INIT may fail when it is called a second time.
    }
    report::step("");
    report::done();
    _exit(EXIT_SUCCESS);
}

}  // namespace

int main(int argc, char** argv) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string mode = argc > 3 ? argv[1] : "";
    if (!((mode == "open" || mode == "drop") && argc == 4) && !(mode == "run" && argc == 5)) {
        std::cerr << "corvane-check-runner is started by `corvane check`\n";
        return 2;
    }
    try {
        limitPlugin();
        report::open(std::stoi(argv[3]));
        crash::install();
        if (mode == "open") {
            open(argv[2]);
        } else if (mode == "drop") {
            drop(argv[2]);
        } else {
            run(argv[2], std::chrono::milliseconds(std::stoi(argv[4])));
        }
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "corvane-check-runner: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
