// Runs one plugin library the way the daemon does, inside a test: the daemon's own
// loading, request broker, event sources and task context, on a platform that lives in
// the test program and does what the test says.
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

/// Values as text, by the name of the argument or record field, both as for `corvane emit`:
/// {{"state", "on"}}.
using Arguments = std::map<std::string, std::string>;

inline constexpr std::chrono::milliseconds defaultLimit{10000};

/// Owner: the test; one at a time in a process. The thread that makes it is the main thread
/// as far as the plugin can tell, and has a main loop, which runs in runMainLoopUntil only.
///
/// Threads: the one that made it, except for log(), waitForLog() and subscriptions(), which
/// may be called from any thread.
///
/// Errors: those named, and std::logic_error for a second host or plugin at a time, or for
/// something that needs a plugin while none is loaded.
class Host {
public:
    /// Starts with an empty log and no system information.
    Host();

    /// Unloads the plugin, if one is loaded; what it leaves behind or throws then, and what
    /// deliveries threw, is lost. Waits for deliveries under way without a limit.
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Opens the library and calls its PLUGIN_INIT. Throws LoadError; the library is closed
    /// then.
    void load(const std::filesystem::path& library);

    /// Waits until all is handled, as waitUntilHandled does, then calls PLUGIN_DEINIT and
    /// closes the library; the subscriptions left are taken away. Throws UnloadError, after
    /// which the plugin is unloaded all the same, and what waitUntilHandled throws, after
    /// which it is still loaded. Another plugin may be loaded then, or the same again.
    Leftovers unload();

    /// Delivers an event on this thread, with defaults for the arguments not given. Whether
    /// the plugin is subscribed. All is handled on return unless another thread is running the
    /// plugin's work. Throws InvalidEvent, and what the plugin's callback throws.
    bool emit(const std::string& event, const Arguments& arguments = {});

    /// Delivers an event once on each of `count` new threads, all at the same time, and returns
    /// without waiting for them. Throws InvalidEvent, and std::system_error if the threads
    /// can't be had. What the plugin's callback throws is thrown by waitUntilHandled. Wait before
    /// more than ten are under way: in the daemon, too, threads that find a plugin's queue full
    /// can be held there for 15 s.
    void emitFromThreads(int count, const std::string& event, const Arguments& arguments = {});

    /// Waits until the plugin has handled every event emitted and all work it has requested up
    /// to now; runs on this thread what of it nobody else runs. Throws TimedOut, what the
    /// plugin's callback threw first on another thread, and what its work throws on this one.
    /// The limit can't be kept while the plugin's work runs on this thread.
    void waitUntilHandled(std::chrono::milliseconds limit = defaultLimit);

    /// Runs the main loop until `condition`, which it asks again every few milliseconds, holds:
    /// true; or until the limit has passed: false. For plugins with timers and the like.
    bool runMainLoopUntil(const std::function<bool()>& condition,
                          std::chrono::milliseconds limit = defaultLimit);

    /// The events the plugin is subscribed to, in the order of `corvane list`.
    std::vector<std::string> subscriptions() const;

    /// What was logged, in order, without the daemon's own lines (tags QVX, QVX_TPL_CONTEXT).
    std::vector<LogLine> log() const;
    void clearLog();

    /// The first line in the log whose text contains `part`, as soon as there is one; nothing
    /// after the limit.
    std::optional<LogLine> waitForLog(const std::string& part,
                                      std::chrono::milliseconds limit = defaultLimit) const;

    /// What the platform's system information has under `key`.
    void setSystemInformation(const std::string& key, int value);

    /// The names of all events that can be emitted.
    static std::vector<std::string> allEvents();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace corvane::testkit
