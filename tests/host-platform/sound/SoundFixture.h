// Fixture that runs a sound server with two null sinks, and the daemon with the event-log plugin,
// in a temporary directory.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/DaemonDirectory.h"

class SoundFixture : public testing::Test {
protected:
    SoundFixture();

    /// Stops the daemon if it is running, and expects the exit status 0: the sanitizers report
    /// errors through the exit status.
    void TearDown() override;

    /// Starts a server with the sinks tv_speaker (the default) and bt_headset, and waits until it
    /// is ready.
    void startServer();

    /// Waits until the daemon has connected to the server and found `sink` as the default sink.
    /// The plugin may not be loaded yet.
    void waitForFollower(const std::string& sink = "tv_speaker");

    /// Starts the daemon with `settings` as its settings file, without waiting for it.
    void startDaemon(const std::string& settings = "");
    void waitForPlugin();

    void makeDefault(const std::string& sink) const { pactl({"set-default-sink", sink}); }

    /// Runs pactl and returns its output. Expects the exit status 0.
    std::string pactl(std::vector<std::string> arguments) const;

    /// Returns the number of speaker-changed events so far.
    int speakerEvents() const;

    /// Waits for the next speaker-changed event and returns its arguments as the plugin logs them.
    std::string nextSpeaker();

    /// Returns the options to run `command` in the daemon's directory and environment.
    ChildProcess::Options beside(std::vector<std::string> command) const;
    const std::filesystem::path& directory() const { return m_daemonDirectory.directory(); }

private:
    DaemonDirectory m_daemonDirectory;

protected:
    std::unique_ptr<ChildProcess> m_server;
    std::unique_ptr<ChildProcess> m_daemon;
};
