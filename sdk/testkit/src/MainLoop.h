// The main loop of the test program.
#pragma once

#include <chrono>
#include <functional>

namespace corvane::testkit {

/// Owner: Host, whose thread calls every function. Errors: std::runtime_error if the main-loop
/// library doesn't start.
class MainLoop {
public:
    MainLoop();
    ~MainLoop();
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;

    /// Runs the loop until `condition` returns true or the limit has passed; returns its last
    /// result. A plugin that quits the loop doesn't end the wait. Throws the exceptions of
    /// `condition` and of callbacks that the loop runs.
    bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);
};

}  // namespace corvane::testkit
