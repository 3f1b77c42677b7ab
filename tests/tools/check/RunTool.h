// Functions that run `corvane` in a test, without the settings of this machine.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"

inline ChildProcess::Result runTool(std::vector<std::string> arguments,
                                    std::map<std::string, std::string> environment = {}) {
    std::vector<std::string> command{TOOL};
    command.insert(command.end(), arguments.begin(), arguments.end());
    environment.emplace("CORVANE_PLATFORM_CONF", "/dev/null");
    // The limit is long enough for ThreadSanitizer on a busy machine.
    return ChildProcess::run({command, {}, environment}, std::chrono::seconds(100));
}

inline std::string fixture(const std::string& name) {
    return FIXTURE_DIRECTORY "/" + name + ".so";
}

/// Runs `corvane check --json` and returns its result. If the output is not JSON, returns an object
/// with the output in "failure".
inline nlohmann::json check(const std::string& file, std::vector<std::string> options = {}) {
    std::vector<std::string> arguments{"check", "--json", file};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const auto result = runTool(arguments);
    auto json = nlohmann::json::parse(result.output, nullptr, false);
    return json.is_discarded() ? nlohmann::json{{"failure", result.output + result.errors}} : json;
}

/// Returns the details of the finding with this id, one per line, or an empty string.
inline std::string detailsOf(const nlohmann::json& result, const std::string& id) {
    std::string text;
    for (const auto& finding : result.value("findings", nlohmann::json::array())) {
        if (finding.at("id") == id) {
            for (const auto& detail : finding.at("details")) {
                text += detail.get<std::string>() + '\n';
            }
        }
    }
    return text;
}
