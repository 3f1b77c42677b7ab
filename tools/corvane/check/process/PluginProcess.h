// Starts and watches the process that runs the plugin: corvane-check-runner.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/corvane/check/process/Descendants.h"
#include "tools/corvane/check/process/ResultReader.h"
#include "tools/corvane/check/process/WorkDirectory.h"
#include "tools/corvane/common/StopSignals.h"

namespace corvane::check {

/// Returns the path of corvane-check-runner. Throws CheckError if it isn't installed.
std::filesystem::path findRunner();

/// The result of a run.
struct ProcessOutcome {
    std::vector<std::pair<std::string, std::string>> findings;  // id and detail
    std::map<std::string, long long> numbers;                   // facts with a number
    std::map<std::string, std::string> texts;                   // facts with a text
    bool isDone = false;                                        // the runner completed all steps
    bool timedOut = false;
    std::optional<int> signal;        // of a crash
    std::optional<int> exitStatus;    // if it exited
    std::string step;                 // the step of the plugin at the end; or empty
    std::vector<std::string> frames;  // the innermost first
    std::string output;               // last part of standard output and error
};

/// Owner: the command, on its thread. One object for each run. Kills all processes of the plugin at
/// the end. Errors: CheckError, also if the user interrupts the command.
class PluginProcess {
public:
    explicit PluginProcess(const WorkDirectory& workDirectory);
    ~PluginProcess();
    PluginProcess(const PluginProcess&) = delete;
    PluginProcess& operator=(const PluginProcess&) = delete;

    /// Runs corvane-check-runner with the arguments `mode`, `file`, the descriptor of the pipe, and
    /// `more`. Kills the process when `limit` is reached.
    ProcessOutcome run(const std::string& mode, const std::string& file,
                       const std::vector<std::string>& more, std::chrono::milliseconds limit);

private:
    using Time = std::chrono::steady_clock::time_point;

    void start(const std::vector<std::string>& command);
    void watch(Time deadline);
    void readRest();
    void onMessage(const nlohmann::json& message);
    void onFact(const std::string& name, const nlohmann::json& value);
    void onSignal(const nlohmann::json& message);
    bool askWhereItHangs();
    void end();

    const WorkDirectory& m_workDirectory;
    const tool::StopSignals m_stop;
    Descendants m_descendants;
    ResultReader m_results;
    pid_t m_id = -1;
    int m_pipe = -1;
    int m_process = -1;
    bool m_isHeld = false;                 // stopped in its signal handler
    std::map<pid_t, std::string> m_steps;  // by thread
    ProcessOutcome m_outcome;
};

}  // namespace corvane::check
