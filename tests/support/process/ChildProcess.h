// Runs a program for a test, in a given directory and environment, and collects its output line by
// line. The program is killed when the object is destroyed or the test process ends.
#pragma once

#include <sys/types.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// Owner: the test.
/// Threads: call the functions on the test's thread. A thread of the object reads the output, so
/// the program never blocks on a full pipe.
/// Errors: failures of system calls are thrown as std::system_error. A program that can't be
/// executed exits with 127.
class ChildProcess {
public:
    struct Options {
        std::vector<std::string> command;                     // searched in PATH if it has no slash
        std::filesystem::path directory = {};                 // empty: the test's working directory
        std::map<std::string, std::string> environment = {};  // added to the test's environment
        std::vector<std::string> unset = {};                  // removed from the test's environment
    };

    struct Result {
        int status;  // as returned by wait()
        std::string output;
        std::string errors;
    };

    static constexpr std::chrono::milliseconds DEFAULT_LIMIT{20000};

    explicit ChildProcess(const Options& options);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Runs a program until it ends. Kills it after the limit.
    static Result run(const Options& options, std::chrono::milliseconds limit = DEFAULT_LIMIT);

    /// Waits for a line of either stream that contains `text` and returns it. The search starts
    /// after the line that the previous call returned. Returns nothing after the limit or at the
    /// end of the output.
    std::optional<std::string> waitForLine(std::string_view text,
                                           std::chrono::milliseconds limit = DEFAULT_LIMIT);

    /// Waits until the program ends. Returns its exit status, or minus the number of the signal
    /// that ended it, or nothing after the limit.
    std::optional<int> wait(std::chrono::milliseconds limit = DEFAULT_LIMIT);

    /// Sends SIGTERM and returns the status as wait() does. Sends SIGKILL after the limit; the
    /// status is then -9.
    int terminate(std::chrono::milliseconds limit = DEFAULT_LIMIT);

    void sendSignal(int number);
    pid_t id() const { return m_id; }

    /// Return what the program has written so far.
    std::string output() const;
    std::string errors() const;

private:
    struct Stream {
        int fd = -1;
        std::string text = {};
        std::size_t split = 0;  // `text` has been split into lines up to this position
    };

    void readAll();
    bool readSome(Stream& stream);
    void collect(int status);

    pid_t m_id = -1;
    std::optional<int> m_status;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Stream m_output;
    Stream m_errors;
    std::array<int, 2> m_stop{-1, -1};
    std::vector<std::string> m_lines;
    std::size_t m_searched = 0;
    bool m_ended = false;
    std::thread m_reader;
};
