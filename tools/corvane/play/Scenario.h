// What `corvane play` plays, read from a file.
#pragma once

#include <chrono>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::tool {

/// The text begins with the file and the line, and says what is allowed.
class ScenarioError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Step;

struct EmitStep {
    const corvane::host::Event* event;
    corvane::host::Values values;
};

struct WaitStep {
    std::chrono::milliseconds time;
};

struct RepeatStep {
    int times;
    std::vector<Step> steps;
};

/// The callback is set or unset, or was called a number of times since the start or since
/// the expectation before of that kind and event.
struct ExpectStep {
    enum class State { Set, Unset, Delivered };

    const corvane::host::Event* event;
    State state;
    unsigned count = 0;
    std::optional<std::chrono::milliseconds> within = {};  // empty: it holds at once, or fails
};

struct Step {
    int line;
    std::variant<EmitStep, WaitStep, RepeatStep, ExpectStep> action;
};

/// Reads all of `input`; `name` is what errors call it. Throws ScenarioError.
std::vector<Step> parseScenario(std::istream& input, const std::string& name);

/// The words of a line: separated by blanks, which may be part of a word inside "...", where
/// a backslash goes before a quote or a backslash. A # at the start of a word begins a
/// comment. Throws std::runtime_error for a quote without an end.
std::vector<std::string> splitWords(const std::string& line);

}  // namespace corvane::tool
