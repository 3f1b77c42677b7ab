// The process that runs the plugin, as the command sees it.
#include "Host.h"

#include "CheckError.h"
#include "Frames.h"
#include "HangSignal.h"
#include "Spawn.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace corvane::check {

namespace fs = std::filesystem;

namespace {

using std::chrono::steady_clock;

int millisecondsUntil(steady_clock::time_point limit) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - steady_clock::now());
    return static_cast<int>(std::clamp<long long>(left.count(), 0, 60000));
}

}  // namespace

fs::path findHost() {
    const auto tool = fs::read_symlink("/proc/self/exe").parent_path();
    for (const auto& place : {tool / "corvane-check-host",
                              tool / CORVANE_CHECK_HOST_FROM_TOOL / "corvane-check-host"}) {
        if (fs::exists(place)) {
            return fs::canonical(place);
        }
    }
    throw CheckError("corvane-check-host is neither in " + tool.string() + " nor in " +
                     (tool / CORVANE_CHECK_HOST_FROM_TOOL).lexically_normal().string() +
                     "; install all of the developer's kit");
}

Host::~Host() {
    end();
}

HostOutcome Host::run(const std::string& mode, const std::string& file,
                      const std::vector<std::string>& more, std::chrono::milliseconds limit) {
    std::vector<std::string> command{findHost(), mode, file, "3"};
    command.insert(command.end(), more.begin(), more.end());
    start(command);
    auto deadline = steady_clock::now() + limit;
    while (true) {
        std::array<pollfd, 3> fds{pollfd{m_pipe, POLLIN, 0}, pollfd{m_process, POLLIN, 0},
                                  pollfd{m_stop.fd(), POLLIN, 0}};
        const int ready = poll(fds.data(), fds.size(), millisecondsUntil(deadline));
        if (fds[2].revents != 0) {
            m_isHeld = true;
            throw CheckError("the check was stopped");
        }
        const bool isOpen = readMessages();
        if (m_isHeld || fds[1].revents != 0) {
            break;
        }
        if (!isOpen) {
            close(std::exchange(m_pipe, -1));  // poll() then waits for the process alone
        }
        if (ready == 0 && steady_clock::now() >= deadline) {
            if (m_outcome.timedOut || !askWhereItHangs()) {
                break;
            }
            deadline = steady_clock::now() + std::chrono::seconds(1);
        }
    }
    end();
    m_outcome.output = contentsOf(m_workplace.directory() / "output");
    return std::move(m_outcome);
}

void Host::start(const std::vector<std::string>& command) {
    std::array<int, 2> ends;
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw CheckError(std::string("no pipe can be made: ") + std::strerror(errno));
    }
    m_pipe = ends[0];
    fcntl(m_pipe, F_SETFL, O_NONBLOCK);
    try {
        m_id = spawn({command, m_workplace.directory(), m_workplace.environment(),
                      m_workplace.directory() / "output", ends[1]});
    } catch (...) {
        close(ends[1]);
        throw;
    }
    close(ends[1]);
    m_process = static_cast<int>(syscall(SYS_pidfd_open, m_id, 0));
    if (m_process < 0) {
        throw CheckError(std::string("the host can't be watched: ") + std::strerror(errno));
    }
}

bool Host::readMessages() {
    std::array<char, 65536> buffer;
    while (m_pipe >= 0) {
        const auto size = read(m_pipe, buffer.data(), buffer.size());
        if (size == 0) {
            return false;
        }
        if (size < 0) {
            return true;
        }
        m_unread.append(buffer.data(), static_cast<std::size_t>(size));
        for (std::size_t end; (end = m_unread.find('\n')) != std::string::npos;) {
            const auto message = nlohmann::json::parse(m_unread.substr(0, end), nullptr, false);
            m_unread.erase(0, end + 1);
            if (message.is_object()) {
                onMessage(message);
            }
        }
    }
    return true;
}

void Host::onMessage(const nlohmann::json& message) {
    if (message.contains("step")) {
        m_steps[message.at("thread")] = message.at("step");
    } else if (message.contains("signal")) {
        onSignal(message);
    } else if (message.contains("done")) {
        m_outcome.isDone = true;
    } else {
        m_outcome.messages.push_back(message);
    }
}

void Host::onSignal(const nlohmann::json& message) {
    m_isHeld = true;
    if (!m_outcome.timedOut) {
        m_outcome.signal = message.at("signal").get<int>();
        m_outcome.step = m_steps[message.at("thread")];
    }
    m_outcome.frames = namesOfFrames(m_id, message.at("frames").get<std::vector<std::uint64_t>>());
}

bool Host::askWhereItHangs() {
    m_outcome.timedOut = true;
    const auto busy =
        std::ranges::find_if(m_steps, [](const auto& step) { return !step.second.empty(); });
    if (busy == m_steps.end()) {
        return false;
    }
    m_outcome.step = busy->second;
    return syscall(SYS_tgkill, m_id, busy->first, hangSignal) == 0;
}

void Host::end() {
    if (m_id > 0) {
        const auto mustEnd = m_isHeld || m_outcome.timedOut;
        if (mustEnd) {
            kill(-m_id, SIGKILL);
        }
        int status = 0;
        siginfo_t ended{};
        // It is looked at before it is collected: as long as it isn't, the group is its own.
        waitid(P_PID, static_cast<id_t>(m_id), &ended, WEXITED | WNOWAIT);
        kill(-m_id, SIGKILL);
        waitpid(std::exchange(m_id, -1), &status, 0);
        if (!mustEnd && WIFEXITED(status)) {
            m_outcome.exitStatus = WEXITSTATUS(status);
        } else if (!mustEnd && WIFSIGNALED(status)) {
            m_outcome.signal = WTERMSIG(status);
        }
        if (m_outcome.step.empty()) {
            for (const auto& [thread, step] : m_steps) {
                m_outcome.step = m_outcome.step.empty() ? step : m_outcome.step;
            }
        }
    }
    for (int* const fd : {&m_pipe, &m_process}) {
        if (*fd >= 0) {
            close(std::exchange(*fd, -1));
        }
    }
}

}  // namespace corvane::check
