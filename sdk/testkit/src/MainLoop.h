// The main loop of the test program.
#pragma once

#include <chrono>
#include <functional>

namespace corvane::testkit {

/// Owner: the host, on whose thread all happens. Errors: std::runtime_error if the main-loop
/// library can't be had.
class MainLoop {
public:
    MainLoop();
    ~MainLoop();
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;

    /// Whether `condition` came to hold before the limit. Not ended by a plugin that quits
    /// the loop. Throws what `condition` throws, and what the loop's users throw.
    bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);
};

}  // namespace corvane::testkit
