// Runs a program for a test: in a directory and an environment of its own, with
// everything it writes collected line by line. The program never outlives the
// object, nor the test that started it.
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

/// Owner: the test, on whose thread all operations run; a thread of the object reads
/// the output, so the program never waits for the test. Errors: what the system refuses
/// is thrown as std::system_error; a program that can't be executed exits with 127.
class ChildProcess {
public:
    struct Options {
        std::vector<std::string> command;      // looked up in PATH if it has no slash
        std::filesystem::path directory = {};  // empty: the test's own
        std::map<std::string, std::string> environment = {};  // added to the test's own
        std::vector<std::string> unset = {};                  // removed from it
    };

    struct Result {
        int status;  // as of wait()
        std::string output;
        std::string errors;
    };

    static constexpr std::chrono::milliseconds DEFAULT_LIMIT{20000};

    explicit ChildProcess(const Options& options);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Runs a program to its end; killed after the limit.
    static Result run(const Options& options, std::chrono::milliseconds limit = DEFAULT_LIMIT);

    /// The next line, of either stream, that contains `text`: the search goes on behind
    /// the line found by the call before. Empty after the limit or the end of the output.
    std::optional<std::string> waitForLine(std::string_view text,
                                           std::chrono::milliseconds limit = DEFAULT_LIMIT);

    /// Waits for the end: the exit status, or minus the number of the signal that ended
    /// it. Empty after the limit.
    std::optional<int> wait(std::chrono::milliseconds limit = DEFAULT_LIMIT);

    /// Sends SIGTERM and waits; SIGKILL (so -9) after the limit.
    int terminate(std::chrono::milliseconds limit = DEFAULT_LIMIT);

    void sendSignal(int number);
    pid_t id() const { return m_id; }

    /// What was written up to now.
    std::string output() const;
    std::string errors() const;

private:
    struct Stream {
        int fd = -1;
        std::string text = {};
        std::size_t split = 0;  // up to here `text` has been cut into lines
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
