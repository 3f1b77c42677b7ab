// A sound server with two null sinks, and the daemon with the event-log plugin, in a
// directory of the test.
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

    /// Expects the daemon to exit with status 0, because the sanitizers report by the exit
    /// status.
    void TearDown() override;

    /// Starts a server with the sinks tv_speaker, the default, and bt_headset, and waits until
    /// it answers.
    void startServer();

    /// Waits until the daemon follows the server with `sink` as the default. The plugin may not
    /// be ready yet.
    void waitForFollower(const std::string& sink = "tv_speaker");

    /// Starts the daemon with a settings file.
    void startDaemon(const std::string& settings = "");
    void waitForPlugin();

    void makeDefault(const std::string& sink) const { pactl({"set-default-sink", sink}); }

    /// Runs pactl. Expects success.
    std::string pactl(std::vector<std::string> arguments) const;

    /// Returns the number of speaker-changed events so far.
    int speakerEvents() const;

    /// Returns the rest of the plugin's line for the next speaker-changed event.
    std::string nextSpeaker();

    /// A program in the daemon's environment.
    ChildProcess::Options beside(std::vector<std::string> command) const;
    const std::filesystem::path& directory() const { return m_daemonDirectory.directory(); }

private:
    DaemonDirectory m_daemonDirectory;

protected:
    std::unique_ptr<ChildProcess> m_server;
    std::unique_ptr<ChildProcess> m_daemon;
};
