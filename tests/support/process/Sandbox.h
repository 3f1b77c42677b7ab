// A directory in which a test starts the daemon on a host platform without a bus. The test chooses
// the plugins, the marker file and the product type.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/DaemonDirectory.h"
#include "tests/support/process/DaemonLog.h"

/// The exit status of a daemon and its log.
struct Outcome {
    int status;  // as returned by ChildProcess::wait
    Log log;
};

/// The daemon logs at level debug and doesn't report slow callbacks. The environment variable
/// CORVANE_DAEMON_WRAPPER contains a command that runs the daemon, for instance a memory checker.
///
/// Owner: the test. Threads: only the test's.
/// Errors: std::runtime_error for a daemon that doesn't start or doesn't end in time.
class Sandbox : public DaemonDirectory {
public:
    Sandbox();

    /// Returns the path of the built library of a fixture plugin.
    static std::filesystem::path libraryOf(const std::string& fixture);
    /// Copies that library into the plugin directory, as file `name`.
    void addPlugin(const std::string& name, const std::string& fixture = "ordinary");
    void addMarkerFile();
    void setSystemInformation(const std::string& text);
    void setProductType(int type);
    /// Set the names, separated by spaces, of the platform calls that fail or throw.
    void failPlatformCalls(const std::string& names);
    void throwFromPlatformCalls(const std::string& names);
    void setArguments(const std::vector<std::string>& arguments);
    /// Starts the daemon through another command, which receives the daemon's command line as its
    /// arguments.
    void setStarter(const std::vector<std::string>& starter) { m_starter = starter; }
    /// Preloads a library into the daemon, before the other preloaded libraries.
    void preload(const std::filesystem::path& library);
    /// Disables the leak detector. For daemons that don't shut the main-loop library down, so that
    /// its memory is not freed.
    void ignoreLeaks();
    /// For daemons that must end by the signal of their crash. Prevents a sanitizer from handling
    /// the signal.
    void leaveCrashesAlone();

    /// Starts the daemon without waiting.
    void launch();
    /// Starts the daemon and waits until its initialisation is complete.
    void start();
    /// Runs `corvane emit` with these arguments and returns its output.
    std::string emit(const std::vector<std::string>& words);
    /// Terminates the daemon with SIGTERM.
    Outcome terminate();
    /// Waits until the launched daemon ends by itself.
    Outcome wait();

    Outcome startAndTerminate();
    Outcome runToItsEnd();

    /// Returns the log of the daemon so far.
    Log log() const { return Log(m_daemon->errors()); }
    ChildProcess& daemon() { return *m_daemon; }

private:
    ChildProcess::Options options() const;

    std::vector<std::string> m_command;
    std::vector<std::string> m_starter;
    std::string m_preloaded;
    std::string m_failures;
    std::string m_exceptions;
    std::string m_checkerOptions;
    std::unique_ptr<ChildProcess> m_daemon;
};
