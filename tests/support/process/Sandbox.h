// A directory in which a test starts the daemon: with plugins, a marker file and a
// product type as the test wants them, on a host platform that finds no bus.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/DaemonLog.h"

/// How a daemon ended and what it wrote.
struct Outcome {
    int status;  // as of ChildProcess::wait
    Log log;
};

/// Owner: the test, on whose thread everything happens. Removes the directory at its end.
/// The environment variable CORVANE_DAEMON_WRAPPER names a program to run the daemon in.
/// Errors: std::runtime_error for a daemon that doesn't start or doesn't end in time.
class Sandbox {
public:
    Sandbox();
    ~Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    const std::filesystem::path& directory() const { return m_directory; }
    std::filesystem::path plugins() const { return m_directory / "plugins"; }

    /// Where the built library of the fixture `fixture` lies.
    static std::filesystem::path libraryOf(const std::string& fixture);
    /// Puts a copy of it into the plugin directory: the loader takes two links to one file
    /// for one library.
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
    /// The settings of the host platform; by default slow callbacks are not reported.
    void setSettings(const std::string& text);
    void setEnvironment(const std::string& variable, const std::string& value);
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
    /// Waits until the daemon, started or not, ends of its own accord.
    Outcome wait();

    Outcome startAndTerminate();
    Outcome runToItsEnd();

    /// The log of the daemon up to now.
    Log log() const { return Log(m_daemon->errors()); }
    ChildProcess& daemon() { return *m_daemon; }

private:
    std::map<std::string, std::string> environment() const;
    std::vector<std::string> command() const;

    std::filesystem::path m_directory;
    std::vector<std::string> m_command;
    std::vector<std::string> m_starter;
    std::map<std::string, std::string> m_environment;
    std::string m_preloaded;
    std::string m_failures;
    std::string m_exceptions;
    std::string m_checkerOptions;
    std::unique_ptr<ChildProcess> m_daemon;
};
