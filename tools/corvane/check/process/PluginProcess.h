// The process that runs the plugin, as the command sees it.
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

/// Where corvane-check-runner is. Throws CheckError if it isn't installed.
std::filesystem::path findRunner();

/// What became of a run.
struct ProcessOutcome {
    std::vector<std::pair<std::string, std::string>> findings;  // id and detail
    std::map<std::string, long long> numbers;                   // facts of these two kinds,
    std::map<std::string, std::string> texts;                   // as the host names them
    bool isDone = false;  // the plugin has gone through everything
    bool timedOut = false;
    std::optional<int> signal;        // of a crash
    std::optional<int> exitStatus;    // if it ended by itself
    std::string step;                 // what the plugin was doing then; or empty
    std::vector<std::string> frames;  // where, the innermost first
    std::string output;               // the end of both streams
};

/// Owner: the command, on its thread. One object for each run. No process of the plugin survives
/// it. Errors: CheckError, also when the user stops the command.
class PluginProcess {
public:
    explicit PluginProcess(const WorkDirectory& workDirectory);
    ~PluginProcess();
    PluginProcess(const PluginProcess&) = delete;
    PluginProcess& operator=(const PluginProcess&) = delete;

    /// Runs the host with `arguments`: mode, file, and what follows the pipe. The process is
    /// ended after the limit at the latest.
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
    bool m_isHeld = false;                 // by its own signal handler
    std::map<pid_t, std::string> m_steps;  // by thread
    ProcessOutcome m_outcome;
};

}  // namespace corvane::check
