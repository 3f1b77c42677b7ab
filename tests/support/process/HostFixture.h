// Fixtures for tests of the host platform. Each test has its own directory, in which it can run the
// daemon, a private bus and a mock of BlueZ.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/DaemonDirectory.h"

class HostFixture : public testing::Test {
protected:
    HostFixture();

    /// Terminates a daemon that is still running and expects exit status 0: the sanitizers report
    /// errors through the exit status.
    void TearDown() override;

    /// Starts the daemon with a plugin and waits until the plugin has been loaded.
    void startDaemon(const std::string& plugin = EVENT_LOG_PLUGIN,
                     const std::map<std::string, std::string>& environment = {});

    /// Waits for the daemon's next line that contains `text`. Fails the test and returns an empty
    /// string after a time limit.
    std::string nextLine(const std::string& text);

    /// Waits for the event-log plugin's next line for `event` and returns its text after the name.
    std::string nextEvent(const std::string& event);

    /// Returns a new connection to the daemon's socket, on which nothing has been sent.
    int connectPeer() const;

    /// Runs `corvane emit` repeatedly until the daemon accepts the event.
    void expectServedAgain() const;

    /// Runs `corvane` with the daemon's socket until it ends.
    ChildProcess::Result tool(const std::vector<std::string>& arguments) const;

    /// Starts `corvane` with the daemon's socket.
    std::unique_ptr<ChildProcess> startTool(const std::vector<std::string>& arguments) const;

    /// Writes a settings file. Returns the environment with which a daemon reads it.
    std::map<std::string, std::string> withSettings(const std::string& text) const;

    /// Run a program that uses the private bus as the system bus. run() expects success and returns
    /// the output.
    std::string run(std::vector<std::string> command) const;
    ChildProcess::Result runAnyhow(std::vector<std::string> command) const;

    const std::filesystem::path& directory() const { return m_daemonDirectory.directory(); }
    std::filesystem::path socket() const { return directory() / "run" / "inject.sock"; }

private:
    DaemonDirectory m_daemonDirectory;

protected:
    std::unique_ptr<ChildProcess> m_daemon;
};

/// Adds a private bus with a mock of BlueZ.
class BluezFixture : public HostFixture {
protected:
    static constexpr const char* ADAPTER = "/org/bluez/hci0";
    static constexpr const char* DEVICE = "/org/bluez/hci0/dev_AA_BB_CC_DD_EE_01";
    static constexpr const char* DEVICE_ADDRESS = "AA:BB:CC:DD:EE:01";

    void startBus();
    void startBluez();

    /// Calls a method of the mock. The arguments have the form of `busctl call`.
    void mock(const std::vector<std::string>& methodAndArguments) const;

    /// Changes properties of an object and emits the signal for that. `properties` is a dictionary
    /// in the syntax of gdbus.
    void update(const std::string& path, const std::string& interface,
                const std::string& properties) const;

    /// Starts the bus, the mock with an adapter that is on, and the daemon. Waits until the daemon
    /// has found the adapter.
    void startWithAdapter();
    void addDevice() const;

    std::unique_ptr<ChildProcess> m_bus;
    std::unique_ptr<ChildProcess> m_bluez;
};
