// Runs the plugin in a separate process and adds findings.
#include "tools/corvane/check/process/RunningCheck.h"

#include <signal.h>

#include <algorithm>
#include <cstring>
#include <sstream>
#include <string_view>

#include "tools/corvane/check/runner/RunnerProtocol.h"

namespace corvane::check {

namespace {

constexpr std::size_t MAX_SHOWN_FRAMES = 16;
constexpr std::size_t MAX_SHOWN_LINES = 12;

std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> list;
    for (std::string word; stream >> word;) {
        list.push_back(word);
    }
    return list;
}

std::vector<std::string> lastLines(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    if (lines.size() > MAX_SHOWN_LINES) {
        lines.erase(lines.begin(), lines.end() - MAX_SHOWN_LINES);
    }
    return lines;
}

std::string during(const ProcessOutcome& outcome) {
    return outcome.step.empty() ? "" : "during " + outcome.step;
}

// Leaves out the frames of the daemon below the plugin's outermost function.
void addFrames(const char* id, const ProcessOutcome& outcome, const std::string& plugin,
               Findings& findings) {
    const auto isOfPlugin = [&](const std::string& frame) {
        return frame.ends_with(" in " + plugin);
    };
    const auto last = std::find_if(outcome.frames.rbegin(), outcome.frames.rend(), isOfPlugin);
    const auto known = last == outcome.frames.rend()
                           ? outcome.frames.size()
                           : static_cast<std::size_t>(outcome.frames.rend() - last);
    for (std::size_t i = 0; i < std::min(known, MAX_SHOWN_FRAMES); ++i) {
        findings.add(id, '#' + std::to_string(i) + ' ' + outcome.frames[i]);
    }
}

std::string nameOfSignal(int number) {
    const char* const name = sigabbrev_np(number);
    return name == nullptr ? "signal " + std::to_string(number) : std::string("SIG") + name;
}

void addEnd(const ProcessOutcome& outcome, Findings& findings) {
    // A report begins with "==4711==ERROR: AddressSanitizer: ..." or "file:1:2: runtime error:
    // ...".
    const auto& output = outcome.output;
    const auto report = std::min(output.find("Sanitizer: "), output.find(": runtime error: "));
    if (report != std::string::npos && outcome.exitStatus != 0) {
        findings.add("sanitizer-report", during(outcome));
        const auto line = output.rfind('\n', report);
        std::istringstream lines(output.substr(line == std::string::npos ? 0 : line + 1));
        std::string text;
        for (std::size_t i = 0; i < MAX_SHOWN_FRAMES && std::getline(lines, text); ++i) {
            findings.add("sanitizer-report", text);
        }
    } else if (!outcome.isDone || outcome.exitStatus != 0) {
        findings.add("process-ended", during(outcome));
        findings.add("process-ended",
                     "exit status " + std::to_string(outcome.exitStatus.value_or(-1)));
        for (const auto& line : lastLines(output)) {
            findings.add("process-ended", line);
        }
    }
}

}  // namespace

void addOutcome(const ProcessOutcome& outcome, const std::string& plugin, Findings& findings) {
    for (const auto& [id, detail] : outcome.findings) {
        findings.add(id, detail);
    }
    if (outcome.timedOut) {
        const char* const id =
            outcome.step.starts_with(DROPPING_STEP) ? "dropped-task-hang" : "hang";
        findings.add(id, during(outcome));
        addFrames(id, outcome, plugin, findings);
    } else if (outcome.signal == HANG_SIGNAL && findings.has("leftover-threads")) {
        addFrames("leftover-threads", outcome, plugin, findings);
    } else if (outcome.signal) {
        // The abort of std::terminate belongs to the uncaught exception.
        const bool isTerminate = *outcome.signal == SIGABRT && findings.has("uncaught-exception");
        const char* const id = isTerminate ? "uncaught-exception" : "crash";
        if (!isTerminate) {
            findings.add(id,
                         nameOfSignal(*outcome.signal) + " (" + strsignal(*outcome.signal) + ')');
        }
        findings.add(id, during(outcome));
        addFrames(id, outcome, plugin, findings);
    } else {
        addEnd(outcome, findings);
    }
}

namespace {

// Checks whether the plugin survives dropped tasks. This delivers the events once more, so it is
// done only if there are no other findings.
void checkDropping(const WorkDirectory& workDirectory, const Limits& limits, Findings& findings) {
    const auto isHarmless = [](const Finding& finding) {
        return finding.kind->id == std::string_view("stays-loaded");
    };
    if (std::ranges::all_of(findings.list(), isHarmless)) {
        addOutcome(PluginProcess(workDirectory).run("drop", workDirectory.name(), {}, limits.whole),
                   workDirectory.name(), findings);
    }
}

}  // namespace

Facts checkRunning(const WorkDirectory& workDirectory, const Limits& limits, Findings& findings) {
    Findings found;
    const auto outcome =
        PluginProcess(workDirectory)
            .run("run", workDirectory.name(), {std::to_string(limits.slow.count())}, limits.whole);
    addOutcome(outcome, workDirectory.name(), found);
    checkDropping(workDirectory, limits, found);
    Facts facts{{}, {}, 0, 0, outcome.output};
    if (outcome.texts.contains("events")) {
        facts.events = words(outcome.texts.at("events"));
    }
    const auto number = [&](const char* name, auto& fact) {
        if (outcome.numbers.contains(name)) {
            fact = outcome.numbers.at(name);
        }
    };
    number("delivered", facts.delivered);
    number("jobs", facts.jobs);
    number("slowest", facts.slowestMs);
    const bool isPinned = findings.has("unique-symbols") || findings.has("nodelete");
    for (const auto& finding : found.list()) {
        if (isPinned && finding.kind->id == std::string("stays-loaded")) {
            continue;  // a static finding gives the reason
        }
        findings.add(finding.kind->id);
        for (const auto& detail : finding.details) {
            findings.add(finding.kind->id, detail);
        }
    }
    return facts;
}

}  // namespace corvane::check
