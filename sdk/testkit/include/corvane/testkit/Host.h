// Runs one plugin library in a test program the way the daemon does. It consists of the daemon's
// own loader, request broker, event sources and task context, and of the host platform's
// callbacks, which deliver the events that the test emits.
#pragma once

#include <corvane/testkit/Errors.h>
#include <corvane/testkit/Leftovers.h>
#include <corvane/testkit/LogLine.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane::testkit {

/// Maps names of arguments or record fields to values, both spelt as for `corvane emit`:
/// {{"state", "on"}}.
using Arguments = std::map<std::string, std::string>;

inline constexpr std::chrono::milliseconds DEFAULT_LIMIT{10000};

/// Owner: the test. Only one Host may exist in a process at a time. The thread that creates it is
/// the plugin's main thread. Its main loop runs only during runMainLoopUntil().
///
/// Threads: call the functions on the thread that created the Host, except log(), waitForLog()
/// and subscriptions(), which may be called on any thread.
///
/// Errors: each function names its exceptions. In addition, std::logic_error is thrown for a
/// second Host or a second plugin at a time, and for a call that needs a plugin while none is
/// loaded.
class Host {
public:
    /// Starts with an empty log and no system information.
    Host();

    /// Unloads the plugin if one is loaded. Leftovers and exceptions are not reported. Waits
    /// without a time limit for deliveries that are still running.
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Opens the library and calls its PLUGIN_INIT. If that fails, closes the library and throws
    /// LoadError.
    void load(const std::filesystem::path& library);

    /// Waits like waitUntilHandled(), calls PLUGIN_DEINIT, closes the library and removes the
    /// subscriptions that are left. Returns what the plugin left behind. Throws UnloadError, after
    /// which the plugin is unloaded nevertheless, and the exceptions of waitUntilHandled(), after
    /// which it is still loaded. The same or another plugin may be loaded afterwards.
    Leftovers unload();

    /// Delivers an event on the calling thread; arguments that are not given have their defaults.
    /// Returns true if the plugin is subscribed. The event is handled on return unless another
    /// thread is running the plugin's tasks. Throws InvalidEvent and the exceptions of the plugin's
    /// callback.
    bool emit(const std::string& event, const Arguments& arguments = {});

    /// Delivers an event once on each of `count` new threads, all at the same time, and returns
    /// without waiting for them. Throws InvalidEvent, and std::system_error if a thread can't be
    /// created. waitUntilHandled() throws the exceptions of the plugin's callback. Call it before
    /// more than ten deliveries are running: as in the daemon, a thread that finds the plugin's
    /// queue full can be blocked for 15 s.
    void emitFromThreads(int count, const std::string& event, const Arguments& arguments = {});

    /// Waits until the plugin has handled every emitted event and all work it has requested so far.
    /// Tasks that no other thread runs are run on the calling thread; the limit can't interrupt
    /// them. Throws TimedOut, the first exception that a callback threw on another thread, and the
    /// exceptions of tasks that run on the calling thread.
    void waitUntilHandled(std::chrono::milliseconds limit = DEFAULT_LIMIT);

    /// Runs the main loop until `condition` returns true or the limit has passed, and returns the
    /// last result of `condition`, which is called every few milliseconds. For plugins that use
    /// the main loop, for instance timers.
    bool runMainLoopUntil(const std::function<bool()>& condition,
                          std::chrono::milliseconds limit = DEFAULT_LIMIT);

    /// Returns the events the plugin is subscribed to, in the order of `corvane list`.
    std::vector<std::string> subscriptions() const;

    /// Returns the log lines in order, without those of the daemon (tags QVX, QVX_TPL_CONTEXT).
    std::vector<LogLine> log() const;
    void clearLog();

    /// Waits for a log line whose text contains `part`. Returns the first one, or nothing if the
    /// limit has passed.
    std::optional<LogLine> waitForLog(const std::string& part,
                                      std::chrono::milliseconds limit = DEFAULT_LIMIT) const;

    /// Sets the value that the platform's system information returns for `key`.
    void setSystemInformation(const std::string& key, int value);

    /// Returns the names of all events that can be emitted.
    static std::vector<std::string> allEvents();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace corvane::testkit
