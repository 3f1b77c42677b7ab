// Between fork and exec, only async-signal-safe functions may be called, because the test has
// several threads. Everything else is prepared before.
#include "tests/support/process/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::array<int, 2> makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail("pipe2");
    }
    return ends;
}

std::vector<std::string> makeEnvironment(const ChildProcess::Options& options) {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const auto equals = text.find('=');
        variables[text.substr(0, equals)] = text.substr(equals + 1);
    }
    for (const auto& name : options.unset) {
        variables.erase(name);
    }
    for (const auto& [name, value] : options.environment) {
        variables[name] = value;
    }
    std::vector<std::string> result;
    for (const auto& [name, value] : variables) {
        result.push_back(name + '=' + value);
    }
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (auto& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

}  // namespace

ChildProcess::ChildProcess(const Options& options) {
    auto command = options.command;
    auto environment = makeEnvironment(options);
    const auto arguments = pointers(command);
    const auto variables = pointers(environment);
    const std::string directory = options.directory.empty() ? "." : options.directory.string();
    const auto output = makePipe();
    const auto errors = makePipe();

    const pid_t parent = getpid();
    m_id = fork();
    if (m_id < 0) {
        fail("fork");
    }
    if (m_id == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent || chdir(directory.c_str()) != 0 || dup2(output[1], 1) < 0 ||
            dup2(errors[1], 2) < 0) {
            _exit(126);
        }
        execvpe(arguments[0], arguments.data(), variables.data());
        _exit(127);
    }
    close(output[1]);
    close(errors[1]);
    m_output.fd = output[0];
    m_errors.fd = errors[0];
    m_stop = makePipe();
    m_reader = std::thread([this] { readAll(); });
}

ChildProcess::~ChildProcess() {
    if (!m_status) {
        kill(m_id, SIGKILL);
        waitpid(m_id, nullptr, 0);
    }
    close(m_stop[1]);  // ends the reader even if a grandchild keeps the output pipes open
    m_reader.join();
    close(m_stop[0]);
    close(m_output.fd);
    close(m_errors.fd);
}

ChildProcess::Result ChildProcess::run(const Options& options, std::chrono::milliseconds limit) {
    ChildProcess process(options);
    if (!process.wait(limit)) {
        process.sendSignal(SIGKILL);
        process.wait(limit);
    }
    return {process.m_status.value_or(-SIGKILL), process.output(), process.errors()};
}

std::optional<std::string> ChildProcess::waitForLine(std::string_view text,
                                                     std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(m_mutex);
    while (true) {
        while (m_searched < m_lines.size()) {
            const auto& line = m_lines[m_searched++];
            if (line.find(text) != std::string::npos) {
                return line;
            }
        }
        if (m_ended || m_changed.wait_until(lock, deadline) == std::cv_status::timeout) {
            if (m_searched == m_lines.size()) {
                return std::nullopt;
            }
        }
    }
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit) {
    if (m_status) {
        return m_status;
    }
    const int handle = static_cast<int>(syscall(SYS_pidfd_open, m_id, 0));
    if (handle < 0) {
        fail("pidfd_open");
    }
    pollfd end{handle, POLLIN, 0};
    const int ready = poll(&end, 1, static_cast<int>(limit.count()));
    close(handle);
    int status = 0;
    if (ready <= 0 || waitpid(m_id, &status, 0) != m_id) {
        return std::nullopt;
    }
    collect(status);
    return m_status;
}

int ChildProcess::terminate(std::chrono::milliseconds limit) {
    sendSignal(SIGTERM);
    if (!wait(limit)) {
        sendSignal(SIGKILL);
        wait(limit);
    }
    return m_status.value_or(-SIGKILL);
}

void ChildProcess::sendSignal(int number) {
    if (!m_status) {
        kill(m_id, number);
    }
}

std::string ChildProcess::output() const {
    const std::lock_guard lock(m_mutex);
    return m_output.text;
}

std::string ChildProcess::errors() const {
    const std::lock_guard lock(m_mutex);
    return m_errors.text;
}

void ChildProcess::collect(int status) {
    m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    // The program's output is in the pipes by now. Wait for the reader with a limit: a grandchild
    // may keep the pipes open.
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::milliseconds(500), [this] { return m_ended; });
}

void ChildProcess::readAll() {
    bool outputOpen = true;
    bool errorsOpen = true;
    while (outputOpen || errorsOpen) {
        std::array<pollfd, 3> fds{pollfd{outputOpen ? m_output.fd : -1, POLLIN, 0},
                                  pollfd{errorsOpen ? m_errors.fd : -1, POLLIN, 0},
                                  pollfd{m_stop[0], POLLIN, 0}};
        if (poll(fds.data(), fds.size(), -1) < 0) {
            continue;
        }
        if (fds[2].revents != 0) {
            break;
        }
        if (fds[0].revents != 0) {
            outputOpen = readSome(m_output);
        }
        if (fds[1].revents != 0) {
            errorsOpen = readSome(m_errors);
        }
    }
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_changed.notify_all();
}

bool ChildProcess::readSome(Stream& stream) {
    std::array<char, 65536> buffer;
    const ssize_t size = read(stream.fd, buffer.data(), buffer.size());
    if (size <= 0) {
        return size < 0 && errno == EINTR;
    }
    const std::lock_guard lock(m_mutex);
    stream.text.append(buffer.data(), static_cast<std::size_t>(size));
    for (std::size_t end; (end = stream.text.find('\n', stream.split)) != std::string::npos;
         stream.split = end + 1) {
        m_lines.push_back(stream.text.substr(stream.split, end - stream.split));
    }
    m_changed.notify_all();
    return true;
}
