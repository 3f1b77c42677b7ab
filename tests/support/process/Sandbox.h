// A directory in which a test starts the daemon: with plugins, a marker file and a
// product type as the test wants them, on a host platform that finds no bus.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/DaemonDirectory.h"
#include "tests/support/process/DaemonLog.h"

/// How a daemon ended and what it wrote.
struct Outcome {
    int status;  // as of ChildProcess::wait
    Log log;
};

/// Owner: the test, on whose thread everything happens. The daemon logs at level debug, and slow
/// callbacks are not reported.
/// The environment variable CORVANE_DAEMON_WRAPPER names a program to run the daemon in.
/// Errors: std::runtime_error for a daemon that doesn't start or doesn't end in time.
class Sandbox : public DaemonDirectory {
public:
    Sandbox();

    /// Where the built library of the fixture `fixture` lies.
    static std::filesystem::path libraryOf(const std::string& fixture);
    /// Puts a copy of it into the plugin directory.
    void addPlugin(const std::string& name, const std::string& fixture = "ordinary");
    void addMarkerFile();
    void setSystemInformation(const std::string& text);
    void setProductType(int type);
    /// Names of calls, separated by blanks, that are to fail or to throw.
    void failPlatformCalls(const std::string& names);
    void throwFromPlatformCalls(const std::string& names);
    void setArguments(const std::vector<std::string>& arguments);
    /// The daemon is started by this command, which gets the daemon's own as its arguments.
    void setStarter(const std::vector<std::string>& starter) { m_starter = starter; }
    /// Loaded into the daemon before anything else.
    void preload(const std::filesystem::path& library);
    /// For daemons that are not to shut the main-loop library down: what that allocated for
    /// itself is then left behind.
    void ignoreLeaks();
    /// For daemons that are to end by the signal of their crash, also where a checker
    /// would report it.
    void leaveCrashesAlone();

    /// Starts the daemon, and no more.
    void launch();
    /// Starts the daemon and waits until it has started.
    void start();
    /// What `corvane emit` with these words said.
    std::string emit(const std::vector<std::string>& words);
    /// Ends the started daemon with SIGTERM.
    Outcome terminate();
    /// Waits until the daemon, started or not, ends by itself.
    Outcome wait();

    Outcome startAndTerminate();
    Outcome runToItsEnd();

    /// The log of the daemon up to now.
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
