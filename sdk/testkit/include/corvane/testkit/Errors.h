// What the host throws.
#pragma once

#include <stdexcept>

namespace corvane::testkit {

/// The plugin couldn't be loaded or started. The text has the file's name and the reason:
/// the loader's own text, or what PLUGIN_INIT returned or threw.
class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// PLUGIN_DEINIT threw, which would end the daemon.
class UnloadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// There is no such event or argument, or the argument can't have that value. The text says
/// what is allowed.
class InvalidEvent : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The plugin took longer than the limit. The text says what is still under way.
class TimedOut : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace corvane::testkit
