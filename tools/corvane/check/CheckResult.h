// The result of a check, for people and for programs.
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
    std::optional<Facts> facts;        // if it was run
    std::vector<std::string> exposed;  // that others may change the file, in sentences
};

std::string textOf(const CheckResult& result);
std::string jsonOf(const CheckResult& result);

}  // namespace corvane::check
