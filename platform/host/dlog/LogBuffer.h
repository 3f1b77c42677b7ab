// Lines on their way to a file: a system call for each would cost more than all else a line does.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>

namespace corvane::host {

/// Keeps lines until there are many, until `patience` has passed since the first of them, or until
/// the process ends, be it by `exit` or by a fault. What another process or `_exit` ends is lost
/// with its last lines. One in a process, made by `open`, which lives for ever; in a child process
/// it keeps nothing.
///
/// Threads: any; one of its own waits for the patience to end.
class LogBuffer {
public:
    /// For the file `fd`. Errors: std::bad_alloc; std::system_error if there is no thread to be
    /// had.
    static LogBuffer* open(int fd, std::chrono::milliseconds patience);

    LogBuffer(const LogBuffer&) = delete;
    LogBuffer& operator=(const LogBuffer&) = delete;

    /// Takes whole lines; writes all there is if `atOnce`. Returns 0 or the negative error of what
    /// it had to write. See writeLogLines for what becomes of lines that can't be written.
    int add(const char* lines, std::size_t size, bool atOnce) noexcept;

private:
    LogBuffer(int fd, std::chrono::milliseconds patience) : m_fd(fd), m_patience(patience) {}

    void watchProcess();
    void writeInTime();
    int write();
    void end();
    void save();

    static LogBuffer* instance;

    const int m_fd;
    const std::chrono::milliseconds m_patience;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isWriterIdle = false;
    bool m_keepsNothing = false;  // the process ends, or is a child
    bool m_isInChild = false;
    std::size_t m_size = 0;
    std::array<char, 65536> m_lines;
    std::thread m_writer;
};

}  // namespace corvane::host
