// The exceptions of Host.
#pragma once

#include <stdexcept>

namespace corvane::testkit {

/// The plugin couldn't be loaded or started. The text contains the file's name and the reason:
/// the dynamic loader's message, or what PLUGIN_INIT returned or threw.
class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// PLUGIN_DEINIT threw an exception, which would end the daemon.
class UnloadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The event or the argument doesn't exist, or the argument can't have that value. The text lists
/// what is allowed.
class InvalidEvent : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The plugin took longer than the limit. The text says what is still running.
class TimedOut : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace corvane::testkit
