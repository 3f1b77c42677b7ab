#include "tests/support/process/Sandbox.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace {

/// Returns the command, with its arguments, that runs the daemon. Empty by default.
std::vector<std::string> wrapper() {
    const char* const set = std::getenv("CORVANE_DAEMON_WRAPPER");
    std::istringstream words(set == nullptr ? "" : set);
    return {std::istream_iterator<std::string>(words), {}};
}

// Long enough for ThreadSanitizer on a busy machine. A wrapper needs more time.
const std::chrono::seconds LIMIT{wrapper().empty() ? 40 : 240};

std::vector<std::string> daemonCommand() {
    auto command = wrapper();
    command.emplace_back(DAEMON);
    return command;
}

std::string withOption(const char* variable, const std::string& option) {
    const char* const set = std::getenv(variable);
    return set == nullptr || *set == '\0' ? option : std::string(set) + ':' + option;
}

}  // namespace

Sandbox::Sandbox() {
    m_command = daemonCommand();
    m_preloaded = PLATFORM_RECORDER;
    // The recorder is preloaded before AddressSanitizer's library, which would report that.
    m_checkerOptions = "verify_asan_link_order=0";
    // On a busy machine callbacks are slow; don't report that in the log.
    setSettings("[callbacks]\nslow_ms = 0\n");
    setEnvironment("ECORE_NO_SYSTEM_MODULES", "1");
    setEnvironment("CORVANE_PLATFORM_CONF", "platform.conf");
    setEnvironment("CORVANE_SYSTEM_INFO", "system-info.conf");
    setEnvironment("CORVANE_INJECT_SOCKET", "inject");
    setEnvironment("CORVANE_LOG_LEVEL", "debug");
}

std::filesystem::path Sandbox::libraryOf(const std::string& fixture) {
    return std::filesystem::path(FIXTURE_DIRECTORY) / (fixture + ".so");
}

void Sandbox::addPlugin(const std::string& name, const std::string& fixture) {
    std::filesystem::copy_file(libraryOf(fixture), plugins() / name);
}

void Sandbox::addMarkerFile() {
    std::ofstream(directory() / "marker").close();
}

void Sandbox::setSystemInformation(const std::string& text) {
    std::ofstream(directory() / "system-info.conf") << text;
}

void Sandbox::setProductType(int type) {
    setSystemInformation(
        "com.ondrix/featureconf/product.zarn_product_type = " + std::to_string(type) + '\n');
}

void Sandbox::failPlatformCalls(const std::string& names) {
    m_failures = names;
}

void Sandbox::throwFromPlatformCalls(const std::string& names) {
    m_exceptions = names;
}

void Sandbox::setArguments(const std::vector<std::string>& arguments) {
    m_command = daemonCommand();
    m_command.insert(m_command.end(), arguments.begin(), arguments.end());
}

void Sandbox::preload(const std::filesystem::path& library) {
    m_preloaded = library.string() + ':' + m_preloaded;
}

void Sandbox::ignoreLeaks() {
    m_checkerOptions += ":detect_leaks=0";
}

void Sandbox::leaveCrashesAlone() {
    const std::string options = "handle_segv=0:handle_abort=0";
    m_checkerOptions += ":detect_leaks=0:" + options;
    setEnvironment("TSAN_OPTIONS", withOption("TSAN_OPTIONS", options));
}

void Sandbox::start() {
    launch();
    if (!m_daemon->waitForLine("OUT << [void CommonDaemon::start()", LIMIT)) {
        throw std::runtime_error("the daemon did not start:\n" + m_daemon->errors());
    }
}

std::string Sandbox::emit(const std::vector<std::string>& words) {
    ChildProcess::Options options{.command = {CORVANE_COMMAND, "emit"}, .directory = directory()};
    options.command.insert(options.command.end(), words.begin(), words.end());
    options.environment = {{"CORVANE_INJECT_SOCKET", "inject"}};
    const auto result = ChildProcess::run(options, LIMIT);
    return result.output + result.errors;
}

Outcome Sandbox::terminate() {
    const int status = m_daemon->terminate(LIMIT);
    return {status, log()};
}

Outcome Sandbox::wait() {
    const auto status = m_daemon->wait(LIMIT);
    if (!status) {
        throw std::runtime_error("the daemon did not end:\n" + m_daemon->errors());
    }
    return {*status, log()};
}

Outcome Sandbox::startAndTerminate() {
    start();
    return terminate();
}

Outcome Sandbox::runToItsEnd() {
    launch();
    return wait();
}

void Sandbox::launch() {
    m_daemon = std::make_unique<ChildProcess>(options());
}

// Only the daemon gets the preloaded libraries, not the starter.
ChildProcess::Options Sandbox::options() const {
    auto options = DaemonDirectory::daemon();
    std::erase(options.unset, "ECORE_NO_SYSTEM_MODULES");
    options.environment["ASAN_OPTIONS"] = withOption("ASAN_OPTIONS", m_checkerOptions);
    options.environment["PLATFORM_FAILURES"] = m_failures;
    options.environment["PLATFORM_EXCEPTIONS"] = m_exceptions;
    options.command = m_starter;
    if (m_starter.empty()) {
        options.environment["LD_PRELOAD"] = m_preloaded;
    } else {
        options.command.insert(options.command.end(), {"env", "LD_PRELOAD=" + m_preloaded});
    }
    options.command.insert(options.command.end(), m_command.begin(), m_command.end());
    return options;
}
