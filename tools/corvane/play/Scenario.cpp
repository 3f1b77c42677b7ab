// Parses the scenarios of `corvane play`.
#include "tools/corvane/play/Scenario.h"

#include <charconv>
#include <cstddef>
#include <system_error>
#include <utility>

#include "platform/host/events/EventArguments.h"

namespace corvane::tool {

namespace {

using Words = std::vector<std::string>;

constexpr int MAX_WAIT_MS = 24 * 60 * 60 * 1000;
constexpr int MAX_COUNT = 1000000;
constexpr std::size_t MAX_NESTING = 16;

[[noreturn]] void fail(const std::string& text) {
    throw std::runtime_error(text);
}

int number(const std::string& text, const char* what, int least, int most) {
    int value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || value < least || value > most) {
        fail(std::string(what) + " can't be \"" + text + "\"; it must be a number from " +
             std::to_string(least) + " to " + std::to_string(most));
    }
    return value;
}

std::chrono::milliseconds milliseconds(const std::string& text) {
    return std::chrono::milliseconds(number(text, "a time in milliseconds", 0, MAX_WAIT_MS));
}

EmitStep parseEmit(const Words& words) {
    if (words.size() < 2) {
        fail("emit needs an event: emit EVENT key=value...");
    }
    const auto& event = host::eventNamed(words[1]);
    return {&event, host::parseArguments(event, {words.begin() + 2, words.end()})};
}

ExpectStep parseExpect(Words words) {
    constexpr const char* form =
        "it must have one of these forms\n  expect EVENT delivered COUNT [within MS]\n"
        "  expect EVENT set [within MS]\n  expect EVENT unset [within MS]";
    if (words.size() < 3) {
        fail(std::string("the expectation is incomplete; ") + form);
    }
    ExpectStep step{&host::eventNamed(words[1]), ExpectStep::State::Set};
    if (words.size() >= 5 && words[words.size() - 2] == "within") {
        step.within = milliseconds(words.back());
        words.resize(words.size() - 2);
    }
    if (words.size() == 4 && words[2] == "delivered") {
        step.state = ExpectStep::State::Delivered;
        step.count = static_cast<unsigned>(number(words[3], "a count", 0, MAX_COUNT));
    } else if (words.size() == 3 && (words[2] == "set" || words[2] == "unset")) {
        step.state = words[2] == "set" ? ExpectStep::State::Set : ExpectStep::State::Unset;
    } else {
        fail(std::string("the expectation is malformed; ") + form);
    }
    return step;
}

const std::string& onlyArgument(const Words& words, const char* form) {
    if (words.size() != 2) {
        fail(words[0] + " must have the form " + form);
    }
    return words[1];
}

class Parser {
public:
    void read(const Words& words, int line) {
        if (words[0] == "emit") {
            add(line, parseEmit(words));
        } else if (words[0] == "wait") {
            add(line, WaitStep{milliseconds(onlyArgument(words, "wait MS"))});
        } else if (words[0] == "expect") {
            add(line, parseExpect(words));
        } else if (words[0] == "repeat") {
            if (m_open.size() > MAX_NESTING) {
                fail("repeats can be nested at most " + std::to_string(MAX_NESTING) + " deep");
            }
            const auto& times = onlyArgument(words, "repeat COUNT");
            m_open.push_back(
                {line, RepeatStep{number(times, "the count of repeat", 1, MAX_COUNT), {}}});
        } else if (words[0] == "end") {
            closeRepeat(words);
        } else {
            fail("there is no step \"" + words[0] +
                 "\"; the steps are emit, wait, expect, repeat and end");
        }
    }

    // The line of the innermost open repeat, or 0.
    int unfinished() const { return m_open.size() == 1 ? 0 : m_open.back().line; }

    std::vector<Step> take() { return std::move(innermost()); }

private:
    std::vector<Step>& innermost() { return std::get<RepeatStep>(m_open.back().action).steps; }

    template <typename Action>
    void add(int line, Action action) {
        innermost().push_back({line, std::move(action)});
    }

    void closeRepeat(const Words& words) {
        if (words.size() != 1) {
            fail("end takes no arguments");
        }
        if (m_open.size() == 1) {
            fail("this end has no repeat");
        }
        auto done = std::move(m_open.back());
        m_open.pop_back();
        innermost().push_back(std::move(done));
    }

    // The scenario itself, then the open repeats from the outermost to the innermost.
    std::vector<Step> m_open{{0, RepeatStep{1, {}}}};
};

bool isBlank(char letter) {
    return letter == ' ' || letter == '\t' || letter == '\r';
}

// Returns the quoted text that begins at `at`, and moves `at` behind it.
std::string quoted(const std::string& line, std::size_t& at) {
    std::string text;
    for (++at; at < line.size(); ++at) {
        if (line[at] == '"') {
            ++at;
            return text;
        }
        const bool escapes = line[at] == '\\' && at + 1 < line.size() &&
                             (line[at + 1] == '"' || line[at + 1] == '\\');
        text += line[escapes ? ++at : at];
    }
    throw std::runtime_error("a quote isn't closed; a quote inside quotes is written \\\"");
}

[[noreturn]] void failAt(const std::string& name, int line, const std::string& text) {
    throw ScenarioError(name + ':' + std::to_string(line) + ": " + text);
}

}  // namespace

std::vector<std::string> splitWords(const std::string& line) {
    std::vector<std::string> words;
    std::size_t at = 0;
    while (true) {
        while (at < line.size() && isBlank(line[at])) {
            ++at;
        }
        if (at == line.size() || line[at] == '#') {
            return words;
        }
        auto& word = words.emplace_back();
        while (at < line.size() && !isBlank(line[at])) {
            if (line[at] == '"') {
                word += quoted(line, at);
            } else {
                word += line[at++];
            }
        }
    }
}

std::vector<Step> parseScenario(std::istream& input, const std::string& name) {
    Parser parser;
    std::string text;
    for (int line = 1; std::getline(input, text); ++line) {
        try {
            if (text.find('\0') != text.npos) {
                fail("this line contains a zero byte");
            }
            if (const auto words = splitWords(text); !words.empty()) {
                parser.read(words, line);
            }
        } catch (const std::runtime_error& error) {
            failAt(name, line, error.what());
        }
    }
    if (const int line = parser.unfinished(); line != 0) {
        failAt(name, line, "this repeat has no end");
    }
    return parser.take();
}

}  // namespace corvane::tool
