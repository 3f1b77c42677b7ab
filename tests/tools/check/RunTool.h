// Runs the command for a test, on nothing but what the test gives it.
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
    // Generous: a run under a thread checker on a busy machine.
    return ChildProcess::run({command, {}, environment}, std::chrono::seconds(100));
}

inline std::string fixture(const std::string& name) {
    return FIXTURE_DIRECTORY "/" + name + ".so";
}

/// The result of a check, as JSON.
inline nlohmann::json check(const std::string& file, std::vector<std::string> options = {}) {
    std::vector<std::string> arguments{"check", "--json", file};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const auto result = runTool(arguments);
    auto json = nlohmann::json::parse(result.output, nullptr, false);
    return json.is_discarded() ? nlohmann::json{{"failure", result.output + result.errors}} : json;
}

/// The details of the one finding with that id, each in a line.
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
