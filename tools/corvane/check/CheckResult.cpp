// The result of a check as text and as JSON.
#include "tools/corvane/check/CheckResult.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/corvane/common/Printable.h"

namespace corvane::check {

namespace {

// Of one finding in the text; JSON has all.
constexpr std::size_t MAX_SHOWN_DETAILS = 20;

const char* wordFor(Severity severity) {
    return severity == Severity::Error ? "error" : "warning";
}

long long countOf(const Findings& findings, Severity severity) {
    return std::ranges::count(findings.list(), severity,
                              [](const Finding& finding) { return finding.kind->severity; });
}

std::string counted(long long count, const std::string& word) {
    return std::to_string(count) + ' ' + word + (count == 1 ? "" : "s");
}

std::string textOf(const Finding& finding) {
    const auto& kind = *finding.kind;
    std::string text = std::string("  ") + wordFor(kind.severity) + ": " + kind.id + "\n    " +
                       kind.explanation + '\n';
    for (std::size_t i = 0; i < std::min(finding.details.size(), MAX_SHOWN_DETAILS); ++i) {
        text += "      " + tool::printable(finding.details[i]) + '\n';
    }
    if (finding.details.size() > MAX_SHOWN_DETAILS) {
        text +=
            "      and " + std::to_string(finding.details.size() - MAX_SHOWN_DETAILS) + " more\n";
    }
    return text + "    " + kind.advice + '\n';
}

std::string textOf(const Findings& findings, Stage stage) {
    std::string text;
    for (const auto& finding : findings.list()) {
        if (finding.kind->stage == stage) {
            text += textOf(finding);
        }
    }
    return text;
}

std::string textOf(const Facts& facts) {
    std::string text;
    if (facts.events) {
        text += "  PLUGIN_INIT succeeded and subscribed to " +
                counted(static_cast<long long>(facts.events->size()), "event") + '\n';
    }
    if (facts.delivered) {
        text += "  " + counted(*facts.delivered, "event") +
                " delivered, on the main thread and on four other threads; the plugin ran " +
                counted(facts.jobs, "job") + "; the slowest task took " +
                std::to_string(facts.slowestMs) + " ms\n";
    }
    return text;
}

}  // namespace

std::string textOf(const CheckResult& result) {
    auto text = tool::printable(result.file) + "\n\nStatic\n";
    const auto before = textOf(result.findings, Stage::Static);
    text +=
        before.empty() ? "  the library can be loaded and exports only its entry points\n" : before;
    text += "\nRunning\n";
    const auto during = textOf(result.findings, Stage::Running);
    if (result.facts) {
        text += textOf(*result.facts);
        text += during.empty() ? "  PLUGIN_DEINIT undid everything, and the library was unloaded\n"
                               : "";
    } else {
        text += result.isStaticOnly ? "  skipped: --static-only\n"
                                    : "  skipped because of the findings above\n";
    }
    text += during + "\nResult\n";
    if (result.findings.list().empty()) {
        return text + "  clean\n";
    }
    return text + "  " + counted(countOf(result.findings, Severity::Error), "error") + ", " +
           counted(countOf(result.findings, Severity::Warning), "warning") + '\n';
}

std::string jsonOf(const CheckResult& result) {
    using Json = nlohmann::ordered_json;
    Json json{{"file", result.file},
              {"clean", result.findings.list().empty()},
              {"errors", countOf(result.findings, Severity::Error)},
              {"warnings", countOf(result.findings, Severity::Warning)},
              {"findings", Json::array()},
              {"exposed", result.exposed}};
    for (const auto& finding : result.findings.list()) {
        json["findings"].push_back(
            {{"id", finding.kind->id},
             {"severity", wordFor(finding.kind->severity)},
             {"stage", finding.kind->stage == Stage::Static ? "static" : "running"},
             {"explanation", finding.kind->explanation},
             {"details", finding.details},
             {"advice", finding.kind->advice}});
    }
    if (result.facts) {
        json["run"] = {{"jobs", result.facts->jobs}, {"slowest_ms", result.facts->slowestMs}};
        if (result.facts->events) {
            json["run"]["events"] = *result.facts->events;
        }
        if (result.facts->delivered) {
            json["run"]["delivered"] = *result.facts->delivered;
        }
    }
    return json.dump(2, ' ', true, Json::error_handler_t::replace) + '\n';
}

}  // namespace corvane::check
