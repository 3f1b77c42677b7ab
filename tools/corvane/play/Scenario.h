// Parses the scenarios of `corvane play`.
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

/// The text begins with file and line, and names what is allowed.
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

/// Expects that the callback is set or unset, or that it was called `count` times since the start
/// or since the last "delivered" expectation for that event.
struct ExpectStep {
    enum class State { Set, Unset, Delivered };

    const corvane::host::Event* event;
    State state;
    unsigned count = 0;
    std::optional<std::chrono::milliseconds> within = {};  // empty: checked at once
};

struct Step {
    int line;
    std::variant<EmitStep, WaitStep, RepeatStep, ExpectStep> action;
};

/// Reads all of `input`. `name` is its name in error texts. Throws ScenarioError.
std::vector<Step> parseScenario(std::istream& input, const std::string& name);

/// Splits a line at blanks. A word may contain blanks inside "..."; there, a backslash escapes a
/// quote or a backslash. A # at the start of a word begins a comment. Throws std::runtime_error if
/// a quote isn't closed.
std::vector<std::string> splitWords(const std::string& line);

}  // namespace corvane::tool
