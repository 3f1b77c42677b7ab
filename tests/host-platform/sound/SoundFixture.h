// A sound server with two sinks that play nowhere, and the daemon with the event-log
// plugin, in a directory that lasts for the test.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"

class SoundFixture : public testing::Test {
protected:
    SoundFixture();
    ~SoundFixture() override;

    /// The daemon must end in order: the checkers of memory and threads report by the
    /// exit status.
    void TearDown() override;

    /// A server with the sinks tv_speaker, which is the default one, and bt_headset. Waits
    /// until it answers.
    void startServer();

    /// Waits until the daemon follows the server, where `sink` is the default one. That may
    /// be before its plugin is ready.
    void waitForFollower(const std::string& sink = "tv_speaker");

    /// Starts the daemon with a settings file.
    void startDaemon(const std::string& settings = "");
    void waitForPlugin();

    void makeDefault(const std::string& sink) const { pactl({"set-default-sink", sink}); }

    /// Runs pactl. Expects success.
    std::string pactl(std::vector<std::string> arguments) const;

    /// The number of speaker-changed events up to now.
    int speakerEvents() const;

    /// What the plugin writes of the next speaker-changed event, behind its name.
    std::string nextSpeaker();

    std::map<std::string, std::string> environment() const;
    std::filesystem::path directory() const { return m_directory; }

    std::unique_ptr<ChildProcess> m_server;
    std::unique_ptr<ChildProcess> m_daemon;

private:
    std::filesystem::path m_directory;
};
