// Fuzzes the text of a scenario. Either it is rejected with the line of the mistake, or the parsed
// scenario can be written and parsed again with the same result.
#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "tests/fuzz/EventWords.h"
#include "tests/fuzz/Input.h"
#include "tools/corvane/play/Scenario.h"

namespace {

using namespace corvane::tool;

std::string quoted(const std::string& word) {
    std::string text = "\"";
    REQUIRE(word.find('\0') == word.npos);  // a D-Bus string can't contain it
    for (const char letter : word) {
        if (letter == '"' || letter == '\\') {
            text += '\\';
        }
        text += letter;
    }
    return text + '"';
}

class Writer {
public:
    std::string write(const std::vector<Step>& steps) {
        for (const auto& step : steps) {
            REQUIRE(step.line > m_line);
            m_line = step.line;
            std::visit(*this, step.action);
        }
        return m_text;
    }

    void operator()(const EmitStep& step) {
        m_text += std::string("emit ") + step.event->name;
        for (const auto& word : wordsOf(*step.event, step.values)) {
            m_text += ' ' + quoted(word);
        }
        m_text += '\n';
    }

    void operator()(const WaitStep& step) {
        REQUIRE(step.time.count() >= 0 && step.time.count() <= 86400000);
        m_text += "wait " + std::to_string(step.time.count()) + '\n';
    }

    void operator()(const RepeatStep& step) {
        REQUIRE(step.times >= 1 && step.times <= 1000000);
        REQUIRE(++m_depth <= 16);
        m_text += "repeat " + std::to_string(step.times) + '\n';
        write(step.steps);
        m_text += "end\n";
        --m_depth;
    }

    void operator()(const ExpectStep& step) {
        m_text += std::string("expect ") + step.event->name;
        if (step.state == ExpectStep::State::Delivered) {
            REQUIRE(step.count <= 1000000);
            m_text += " delivered " + std::to_string(step.count);
        } else {
            m_text += step.state == ExpectStep::State::Set ? " set" : " unset";
        }
        if (step.within) {
            REQUIRE(step.within->count() >= 0 && step.within->count() <= 86400000);
            m_text += " within " + std::to_string(step.within->count());
        }
        m_text += '\n';
    }

private:
    std::string m_text;
    int m_line = 0;
    int m_depth = 0;
};

std::vector<Step> parse(const std::string& text) {
    std::istringstream input(text);
    return parseScenario(input, "a scenario");
}

void requirePlace(const std::string& complaint, const std::string& text) {
    const std::string name = "a scenario:";
    REQUIRE(complaint.starts_with(name));
    char* end = nullptr;
    const long line = std::strtol(complaint.c_str() + name.size(), &end, 10);
    REQUIRE(line >= 1 && line <= 1 + std::count(text.begin(), text.end(), '\n'));
    REQUIRE(end[0] == ':' && end[1] == ' ' && end[2] != '\0');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<Step> steps;
    try {
        steps = parse(text);
    } catch (const ScenarioError& error) {
        requirePlace(error.what(), text);
        return 0;
    }
    const auto written = Writer().write(steps);
    REQUIRE(Writer().write(parse(written)) == written);
    return 0;
}
