// A directory of its own for each test, in which it runs the daemon, a private bus
// and a mock of BlueZ as it needs them.
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

    /// A daemon that still runs must end in order: the checkers of memory and threads
    /// report by the exit status.
    void TearDown() override;

    /// Starts the daemon with a plugin and waits until the plugin has been loaded.
    void startDaemon(const std::string& plugin = EVENT_LOG_PLUGIN,
                     const std::map<std::string, std::string>& environment = {});

    /// The daemon's next line that contains `text`, or an empty one after a time limit.
    std::string nextLine(const std::string& text);

    /// The part of the next line of the event-log plugin for `event` behind its name.
    std::string nextEvent(const std::string& event);

    /// A connection to the daemon's socket, over which nothing has been said yet.
    int connectPeer() const;

    /// Runs `corvane emit` until the daemon takes the event.
    void expectServedAgain() const;

    /// Runs `corvane` with the daemon's socket.
    ChildProcess::Result tool(const std::vector<std::string>& arguments) const;

    /// Starts `corvane` with the daemon's socket.
    std::unique_ptr<ChildProcess> startTool(const std::vector<std::string>& arguments) const;

    /// Writes a file of settings; returns the environment with which a daemon reads it.
    std::map<std::string, std::string> withSettings(const std::string& text) const;

    /// Runs any program where the private bus is the system bus. Expects success.
    std::string run(std::vector<std::string> command) const;
    ChildProcess::Result runAnyhow(std::vector<std::string> command) const;

    const std::filesystem::path& directory() const { return m_daemonDirectory.directory(); }
    std::filesystem::path socket() const { return directory() / "run" / "inject.sock"; }

private:
    DaemonDirectory m_daemonDirectory;

protected:
    std::unique_ptr<ChildProcess> m_daemon;
};

/// The same with a private bus and BlueZ on it.
class BluezFixture : public HostFixture {
protected:
    static constexpr const char* ADAPTER = "/org/bluez/hci0";
    static constexpr const char* DEVICE = "/org/bluez/hci0/dev_AA_BB_CC_DD_EE_01";
    static constexpr const char* DEVICE_ADDRESS = "AA:BB:CC:DD:EE:01";

    void startBus();
    void startBluez();

    /// A method of the mock, as `busctl call` takes its arguments.
    void mock(const std::vector<std::string>& methodAndArguments) const;

    /// Changes properties of an object, given as gdbus takes a dictionary, with the signal.
    void update(const std::string& path, const std::string& interface,
                const std::string& properties) const;

    /// Starts all, with an adapter that is on, and waits until the daemon has seen it.
    void startWithAdapter();
    void addDevice() const;

    std::unique_ptr<ChildProcess> m_bus;
    std::unique_ptr<ChildProcess> m_bluez;
};
