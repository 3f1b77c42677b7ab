// The words of a line of a scenario.
#include <cstddef>

#include "tools/corvane/play/Scenario.h"

namespace corvane::tool {

namespace {

bool isBlank(char letter) {
    return letter == ' ' || letter == '\t' || letter == '\r';
}

// The quoted text that begins at `at`, which is moved behind its end.
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
    throw std::runtime_error("a quote has no end; a quote inside quotes is written \\\"");
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

}  // namespace corvane::tool
