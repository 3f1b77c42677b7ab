// Starts and watches the process that runs the plugin.
#include "tools/corvane/check/process/PluginProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "tools/corvane/check/findings/CheckError.h"
#include "tools/corvane/check/findings/Findings.h"
#include "tools/corvane/check/process/Frames.h"
#include "tools/corvane/check/process/Spawn.h"
#include "tools/corvane/check/runner/RunnerProtocol.h"

namespace corvane::check {

namespace fs = std::filesystem;

namespace {

using std::chrono::steady_clock;

int millisecondsUntil(steady_clock::time_point limit) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - steady_clock::now());
    return static_cast<int>(std::clamp<long long>(left.count(), 0, 60000));
}

}  // namespace

fs::path findRunner() {
    const auto tool = fs::read_symlink("/proc/self/exe").parent_path();
    for (const auto& place : {tool / "corvane-check-runner",
                              tool / CORVANE_CHECK_RUNNER_FROM_TOOL / "corvane-check-runner"}) {
        if (fs::exists(place)) {
            return fs::canonical(place);
        }
    }
    throw CheckError("corvane-check-runner is neither in " + tool.string() + " nor in " +
                     (tool / CORVANE_CHECK_RUNNER_FROM_TOOL).lexically_normal().string() +
                     "; reinstall the package corvane-dev");
}

PluginProcess::PluginProcess(const WorkDirectory& workDirectory)
    : m_workDirectory(workDirectory),
      m_results([this](const nlohmann::json& message) { onMessage(message); }) {}

PluginProcess::~PluginProcess() {
    for (const int fd : {m_pipe, m_process}) {
        if (fd >= 0) {
            close(fd);
        }
    }
}

ProcessOutcome PluginProcess::run(const std::string& mode, const std::string& file,
                                  const std::vector<std::string>& more,
                                  std::chrono::milliseconds limit) {
    std::vector<std::string> command{findRunner(), mode, file, "3"};
    command.insert(command.end(), more.begin(), more.end());
    const auto deadline = steady_clock::now() + limit;
    start(command);
    watch(deadline);
    end();
    m_outcome.output = tailOf(m_workDirectory.path() / "output");
    return std::move(m_outcome);
}

void PluginProcess::start(const std::vector<std::string>& command) {
    std::array<int, 2> ends;
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw CheckError(std::string("no pipe can be created: ") + std::strerror(errno));
    }
    m_pipe = ends[0];
    fcntl(m_pipe, F_SETFL, O_NONBLOCK);
    try {
        m_id = spawn({command, m_workDirectory.path(), m_workDirectory.environment(),
                      m_workDirectory.path() / "output", ends[1]});
    } catch (...) {
        close(ends[1]);
        throw;
    }
    close(ends[1]);
    m_process = static_cast<int>(syscall(SYS_pidfd_open, m_id, 0));
    if (m_process < 0) {
        throw CheckError(std::string("corvane-check-runner can't be watched: ") +
                         std::strerror(errno));
    }
}

// Returns when the process ends, when its signal handler stops it, or when it hangs.
void PluginProcess::watch(Time deadline) {
    while (!m_isHeld) {
        std::array<pollfd, 3> fds{pollfd{m_pipe, POLLIN, 0}, pollfd{m_process, POLLIN, 0},
                                  pollfd{m_stop.fd(), POLLIN, 0}};
        poll(fds.data(), fds.size(), millisecondsUntil(deadline));
        if (fds[2].revents != 0) {
            throw CheckError("the check was stopped");
        }
        if (fds[1].revents != 0) {
            readRest();
            return;
        }
        if (fds[0].revents != 0 && m_results.readFrom(m_pipe) == ResultReader::Outcome::End) {
            close(std::exchange(m_pipe, -1));  // poll() then waits for the process alone
        }
        if (!m_isHeld && steady_clock::now() >= deadline) {
            if (m_outcome.timedOut || !askWhereItHangs()) {
                return;
            }
            deadline = steady_clock::now() + std::chrono::seconds(1);
        }
    }
}

// The process has ended, so all its messages are in the pipe. The reader limits what its children
// may add.
void PluginProcess::readRest() {
    while (m_pipe >= 0 && m_results.readFrom(m_pipe) == ResultReader::Outcome::Read) {
    }
}

void PluginProcess::onMessage(const nlohmann::json& message) {
    if (message.contains("step")) {
        m_steps[message.at("thread").get<pid_t>()] = message.at("step").get<std::string>();
    } else if (message.contains("signal")) {
        onSignal(message);
    } else if (message.contains("finding")) {
        const auto id = message.at("finding").get<std::string>();
        m_outcome.findings.emplace_back(findingKind(id).id, message.at("detail"));
    } else if (message.contains("fact")) {
        onFact(message.at("fact"), message.at("value"));
    } else {
        m_outcome.isDone = message.at("done").get<bool>();
    }
}

void PluginProcess::onFact(const std::string& name, const nlohmann::json& value) {
    if (name == "events" || name == "refusal") {
        m_outcome.texts[name] = value.get<std::string>();
    } else if (name == "delivered" || name == "jobs" || name == "slowest") {
        m_outcome.numbers[name] = value.get<long long>();
    } else {
        throw std::out_of_range("unknown fact " + name);
    }
}

void PluginProcess::onSignal(const nlohmann::json& message) {
    const auto thread = message.at("thread").get<pid_t>();
    const auto number = message.at("signal").get<int>();
    m_outcome.frames = namesOfFrames(m_id, message.at("frames").get<std::vector<std::uint64_t>>());
    m_isHeld = true;
    if (!m_outcome.timedOut) {
        m_outcome.signal = number;
        m_outcome.step = m_steps[thread];
    }
}

bool PluginProcess::askWhereItHangs() {
    m_outcome.timedOut = true;
    const auto busy =
        std::ranges::find_if(m_steps, [](const auto& step) { return !step.second.empty(); });
    if (busy == m_steps.end()) {
        return false;
    }
    m_outcome.step = busy->second;
    return syscall(SYS_tgkill, m_id, busy->first, HANG_SIGNAL) == 0;
}

void PluginProcess::end() {
    if (!m_isHeld && !m_outcome.timedOut) {
        int status = 0;
        waitpid(m_id, &status, 0);
        if (WIFEXITED(status)) {
            m_outcome.exitStatus = WEXITSTATUS(status);
        } else {
            m_outcome.signal = WTERMSIG(status);
        }
    }
    m_descendants.end();
    for (const auto& [thread, step] : m_steps) {
        m_outcome.step = m_outcome.step.empty() ? step : m_outcome.step;
    }
}

}  // namespace corvane::check
