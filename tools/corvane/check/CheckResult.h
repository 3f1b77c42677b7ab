// The result of a check as text and as JSON.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/corvane/check/findings/Findings.h"
#include "tools/corvane/check/process/RunningCheck.h"

namespace corvane::check {

struct CheckResult {
    std::string file;
    Findings findings;
    bool isStaticOnly = false;
    std::optional<Facts> facts;        // if the plugin was run
    std::vector<std::string> exposed;  // sentences from exposureOfFile()
};

std::string textOf(const CheckResult& result);
std::string jsonOf(const CheckResult& result);

}  // namespace corvane::check
