#include "tests/daemon/faults/PluginFaults.h"

#include <elf.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <stdexcept>

#include "tests/daemon/faults/PipeGate.h"

namespace fs = std::filesystem;

namespace {

using Install = std::function<void(Sandbox&)>;
using Run = std::function<Outcome(Sandbox&)>;

// The daemon knows this name. Its priority is the highest here, so it is loaded first.
constexpr const char* FIRST = "libbleapp.so";
constexpr const char* PLUGIN = "libfoo.so";
constexpr const char* OTHER = "libother.so";

const std::vector<std::string> OFF{"bt-adapter-state-changed", "state=off"};
const std::vector<std::string> ON{"bt-adapter-state-changed", "state=on"};
const std::vector<std::string> NAME{"bt-adapter-name-changed", "name=tv"};
const std::vector<std::string> FULL{"bt-adapter-max-device-connected"};

Install fixture(const std::string& name) {
    return [name](Sandbox& sandbox) { sandbox.addPlugin(PLUGIN, name); };
}

void write(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string libraryBytes() {
    std::ifstream library(Sandbox::libraryOf("ordinary"), std::ios::binary);
    return {std::istreambuf_iterator<char>(library), {}};
}

Install file(const std::string& bytes) {
    return [bytes](Sandbox& sandbox) { write(sandbox.plugins() / PLUGIN, bytes); };
}

// Installs the first bytes of a library, as after an interrupted update. `part` is a fraction.
Install truncated(double part) {
    return [part](Sandbox& sandbox) {
        const std::string bytes = libraryBytes();
        const auto size = static_cast<std::size_t>(static_cast<double>(bytes.size()) * part);
        write(sandbox.plugins() / PLUGIN, bytes.substr(0, size));
    };
}

void installHead(Sandbox& sandbox) {
    write(sandbox.plugins() / PLUGIN, libraryBytes().substr(0, sizeof(Elf64_Ehdr)));
}

void installForAnotherMachine(Sandbox& sandbox) {
    std::string bytes = libraryBytes();
    bytes.at(offsetof(Elf64_Ehdr, e_machine)) = EM_NONE;
    write(sandbox.plugins() / PLUGIN, bytes);
}

void installProgram(Sandbox& sandbox) {
    fs::copy_file(DAEMON, sandbox.plugins() / PLUGIN);
}

// The superuser can read every file, so the daemon is started without that capability.
void installUnreadable(Sandbox& sandbox) {
    sandbox.addPlugin(PLUGIN);
    fs::permissions(sandbox.plugins() / PLUGIN, fs::perms::none);
    if (geteuid() == 0) {
        sandbox.setStarter({"setpriv", "--bounding-set", "-dac_override,-dac_read_search"});
    }
}

void installDanglingLink(Sandbox& sandbox) {
    fs::create_symlink("nowhere.so", sandbox.plugins() / PLUGIN);
}

void installLinkToItself(Sandbox& sandbox) {
    fs::create_symlink(PLUGIN, sandbox.plugins() / PLUGIN);
}

void installDirectory(Sandbox& sandbox) {
    fs::create_directory(sandbox.plugins() / PLUGIN);
}

void installPipe(Sandbox& sandbox) {
    if (mkfifo((sandbox.plugins() / PLUGIN).c_str(), 0600) != 0) {
        throw std::runtime_error("no pipe can be made");
    }
}

void installOneThatRemovesAnother(Sandbox& sandbox) {
    sandbox.addPlugin(FIRST, "removes_other");
    sandbox.addPlugin(OTHER);
}

void installTwoLinksToOneFile(Sandbox& sandbox) {
    sandbox.addPlugin(FIRST, "subscriber");
    fs::create_hard_link(sandbox.plugins() / FIRST, sandbox.plugins() / "libbtapp-lite.so");
}

// Installs the fixture so that it is loaded before a plugin without faults.
Install beforeAnother(const std::string& name) {
    return [name](Sandbox& sandbox) {
        sandbox.addPlugin(FIRST, name);
        sandbox.addPlugin(OTHER, "subscriber");
    };
}

// Installs the fixture so that it is loaded after a plugin without faults. In the other order, the
// second library might get the addresses of the first, closed one, and the transcript would give
// them the same names.
Install behindAnother(const std::string& name) {
    return [name](Sandbox& sandbox) {
        sandbox.addPlugin(FIRST, "subscriber");
        sandbox.addPlugin(OTHER, name);
    };
}

void installOneForEachOfThreeEvents(Sandbox& sandbox) {
    sandbox.addPlugin("libbleapp.so", "waits_for_event_1");
    sandbox.addPlugin("libbtapp-lite.so", "waits_for_event_2");
    sandbox.addPlugin(OTHER, "waits_for_event_3");
}

Outcome startAndStop(Sandbox& sandbox) {
    return sandbox.startAndTerminate();
}

Outcome endByItself(Sandbox& sandbox) {
    sandbox.ignoreLeaks();
    return sandbox.runToItsEnd();
}

Run emit(const std::vector<std::vector<std::string>>& events) {
    return [events](Sandbox& sandbox) {
        sandbox.start();
        for (const auto& event : events) {
            sandbox.emit(event);
        }
        return sandbox.terminate();
    };
}

Run emitItsEnd(const std::vector<std::string>& event) {
    return [event](Sandbox& sandbox) {
        sandbox.leaveCrashesAlone();
        sandbox.start();
        sandbox.emit(event);
        return sandbox.wait();
    };
}

Outcome failOnTheWayDown(Sandbox& sandbox) {
    sandbox.ignoreLeaks();
    return sandbox.startAndTerminate();
}

void setThreads(Sandbox& sandbox, int count) {
    sandbox.setSettings("[callbacks]\nslow_ms = 0\n[inject]\nthreads = " + std::to_string(count) +
                        '\n');
}

Outcome throwOnAThreadOfThePlatform(Sandbox& sandbox) {
    setThreads(sandbox, 1);
    return emitItsEnd(OFF)(sandbox);
}

void waitForArrival(Sandbox& sandbox) {
    if (!sandbox.daemon().waitForLine("waits at the gate", std::chrono::seconds(40))) {
        throw std::runtime_error("no plugin reached the gate:\n" + sandbox.daemon().errors());
    }
}

// The second and the third thread deliver their events while the first is inside the plugin.
Outcome threeThreadsForOnePlugin(Sandbox& sandbox) {
    setThreads(sandbox, 3);
    PipeGate gate(sandbox);
    sandbox.start();
    auto first = std::async(std::launch::async, [&sandbox] { return sandbox.emit(OFF); });
    waitForArrival(sandbox);
    sandbox.emit(NAME);
    sandbox.emit(FULL);
    gate.letPass(1);
    first.get();
    return sandbox.terminate();
}

// All three threads are inside their plugins before the first one leaves.
Outcome threeThreadsForThreePlugins(Sandbox& sandbox) {
    setThreads(sandbox, 3);
    PipeGate gate(sandbox);
    sandbox.start();
    std::vector<std::future<std::string>> emitted;
    for (const auto& event : {OFF, NAME, FULL}) {
        emitted.push_back(
            std::async(std::launch::async, [&sandbox, event] { return sandbox.emit(event); }));
        waitForArrival(sandbox);
    }
    gate.letPass(3);
    for (auto& answer : emitted) {
        answer.get();
    }
    return sandbox.terminate();
}

// The plugin is unloaded while its callback still runs on a thread of the platform.
Outcome endDuringCallback(Sandbox& sandbox) {
    setThreads(sandbox, 1);
    const PipeGate gate(sandbox);
    sandbox.start();
    const auto emitted = std::async(std::launch::async, [&sandbox] { return sandbox.emit(OFF); });
    waitForArrival(sandbox);
    return sandbox.terminate();
}

// The tasks that fill the plugin's queue run after the plugin has failed to start.
Outcome failWithFullQueue(Sandbox& sandbox) {
    PipeGate gate(sandbox);
    sandbox.start();
    gate.letPass(1);
    if (!sandbox.daemon().waitForLine("the runner has left", std::chrono::seconds(40))) {
        throw std::runtime_error("the queue wasn't run:\n" + sandbox.daemon().errors());
    }
    return sandbox.terminate();
}

constexpr const char* CANNOT_BE_OPENED = "cannot_be_opened";
constexpr const char* NO_CANDIDATE = "no_candidate";

}  // namespace

const std::vector<PluginFault>& pluginFaults() {
    static const std::vector<PluginFault> faults{
        // Files that are not libraries or can't be opened.
        {"text", file("not a library\n"), startAndStop, 0, CANNOT_BE_OPENED},
        {"empty_file", file(""), startAndStop, 0, CANNOT_BE_OPENED},
        {"head_of_a_library", installHead, startAndStop, 0, CANNOT_BE_OPENED},
        {"first_bytes_of_a_library", truncated(0.05), startAndStop, 0, CANNOT_BE_OPENED},
        {"first_fifth_of_a_library", truncated(0.2), startAndStop, 0, CANNOT_BE_OPENED},
        {"for_another_machine", installForAnotherMachine, startAndStop, 0, CANNOT_BE_OPENED},
        {"program", installProgram, startAndStop, 0, CANNOT_BE_OPENED},
        {"unreadable", installUnreadable, startAndStop, 0, CANNOT_BE_OPENED},
        {"missing_variable", fixture("missing_variable"), startAndStop, 0, CANNOT_BE_OPENED},
        {"needs_absent_library", fixture("needs_absent_library"), startAndStop, 0,
         CANNOT_BE_OPENED},
        {"removed_before_its_turn", installOneThatRemovesAnother, startAndStop},
        {"dangling_link", installDanglingLink, startAndStop, 0, NO_CANDIDATE},
        {"link_to_itself", installLinkToItself, startAndStop, 0, NO_CANDIDATE},
        {"directory", installDirectory, startAndStop, 0, NO_CANDIDATE},
        {"pipe", installPipe, startAndStop, 0, NO_CANDIDATE},
        {"two_links_to_one_file", installTwoLinksToOneFile, emit({OFF})},

        // Libraries with functions that are missing or fail.
        {"no_init", fixture("no_init"), startAndStop},
        {"no_init_before_another", beforeAnother("no_init"), emit({OFF})},
        {"no_deinit", fixture("no_deinit"), startAndStop},
        {"init_returns_minus_1", fixture("init_returns_minus_1"), startAndStop},
        {"init_returns_int_min", fixture("init_returns_int_min"), startAndStop},
        {"init_throws", fixture("init_throws_runtime_error"), startAndStop},
        {"init_throws_own_class", fixture("init_throws_own_class"), startAndStop},
        {"init_throws_int", fixture("init_throws_int"), endByItself, -SIGABRT},
        {"init_exits", fixture("exits_in_init"), endByItself, 3},
        {"subscribes_then_fails", behindAnother("subscribes_then_fails"), emit({OFF})},
        {"deinit_throws", beforeAnother("deinit_throws"), failOnTheWayDown, 255},
        {"static_constructor_throws", beforeAnother("static_constructor_throws"), emit({OFF})},
        {"static_constructor_throws_int", fixture("static_constructor_throws_int"), endByItself,
         -SIGABRT},
        {"missing_function_in_init", fixture("missing_function_in_init"), endByItself, 127},
        {"missing_function_in_callback", fixture("missing_function_in_callback"), emitItsEnd(OFF),
         127},

        // Subscriptions.
        {"unsubscribes_in_callback", fixture("unsubscribes_in_callback"), emit({OFF, ON})},
        {"subscribed_twice_unsubscribes_in_callback",
         fixture("subscribed_twice_unsubscribes_in_callback"), emit({OFF, ON})},
        {"resubscribes", fixture("resubscribes"), emit({OFF, ON})},
        {"subscribes_in_callback", fixture("subscribes_in_callback"), emit({NAME, OFF, NAME})},
        {"subscribes_again_in_callback", fixture("subscribes_again_in_callback"), emit({OFF, ON})},
        {"leaves_subscriptions", fixture("leaves_subscriptions"), emit({OFF})},
        {"null_callback", fixture("null_callback"), emitItsEnd(OFF), -SIGSEGV},

        // Callbacks and tasks.
        {"callback_throws", fixture("callback_throws"), emitItsEnd(OFF), 255},
        {"callback_throws_own_class", fixture("callback_throws_own_class"), emitItsEnd(OFF), 255},
        {"callback_throws_on_a_thread", fixture("callback_throws"), throwOnAThreadOfThePlatform,
         -SIGABRT, "", true},
        {"callback_exits", fixture("exits_in_callback"), emitItsEnd(OFF), 3},
        {"callback_aborts", fixture("aborts_in_callback"), emitItsEnd(OFF), -SIGABRT},
        {"task_throws", fixture("task_throws"), startAndStop},
        {"task_throws_in_init", fixture("task_throws_in_init"), startAndStop},
        {"empty_task", fixture("empty_task"), startAndStop},
        {"empty_task_in_init", fixture("empty_task_in_init"), startAndStop},
        {"posts_from_task", fixture("posts_from_task"), emit({OFF})},
        {"posts_ten_from_task", fixture("posts_ten_from_task"), emit({OFF})},
        {"posts_eleven_from_task", fixture("posts_eleven_from_task"), emitItsEnd(OFF), 255},
        {"queue_freed_in_time", fixture("queue_freed_in_time"), startAndStop, 0, "", true},
        {"queue_stays_full", fixture("queue_stays_full"), startAndStop, 0, "", true},
        {"fails_with_full_queue", beforeAnother("fails_with_full_queue"), failWithFullQueue, 0, "",
         true},
        {"goes_during_callback", fixture("goes_during_callback"), endDuringCallback, 0, "", true},
        {"three_threads_for_one_plugin", fixture("three_events"), threeThreadsForOnePlugin, 0, "",
         true},
        {"three_threads_for_three_plugins", installOneForEachOfThreeEvents,
         threeThreadsForThreePlugins, 0, "", true},
    };
    return faults;
}
