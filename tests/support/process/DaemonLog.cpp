#include "tests/support/process/DaemonLog.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>

namespace {

constexpr std::string_view DIGITS = "0123456789";

// "12:34:56.789 4711 I TAG: text"
LogLine parseLine(const std::string& line) {
    std::istringstream words(line);
    std::string time;
    LogLine parsed;
    std::getline(words >> time >> parsed.thread >> parsed.priority >> std::ws, parsed.tag, ':');
    words.get();
    std::getline(words, parsed.text);
    const bool isLogLine = words && time.size() == 12 && parsed.priority.size() == 1 &&
                           parsed.thread.find_first_not_of(DIGITS) == std::string::npos;
    return isLogLine ? parsed : LogLine{"", "", "", line};
}

// Replaces source line numbers: numbers in parentheses that don't end the text.
std::string withoutSourceLines(std::string text) {
    for (std::size_t at = 0; (at = text.find('(', at)) != std::string::npos; ++at) {
        const std::size_t end = text.find_first_not_of(DIGITS, at + 1);
        if (end > at + 1 && end + 1 < text.size() && text[end] == ')') {
            text.replace(at + 1, end - at - 1, 1, '#');
        }
    }
    return text;
}

struct Contains {
    bool operator()(const LogLine& line) const { return line.text.find(text) != std::string::npos; }
    std::string_view text;
};

class PointerNames {
public:
    std::string replaceIn(std::string text) {
        for (std::size_t at = 0; (at = text.find("0x", at)) != std::string::npos; ++at) {
            const std::size_t end = text.find_first_not_of("0123456789abcdef", at + 2);
            const std::size_t size = std::min(end, text.size()) - at;
            text.replace(at, size, nameOf(text.substr(at, size)));
        }
        return text;
    }

private:
    const std::string& nameOf(const std::string& pointer) {
        const auto number = std::to_string(m_names.size() + 1);
        return m_names.try_emplace(pointer, "@" + number).first->second;
    }

    std::map<std::string, std::string> m_names;
};

std::string transcribe(const LogLine& line, PointerNames& pointers) {
    const std::string head = line.tag.empty() ? "" : line.priority + ' ' + line.tag + ": ";
    return head + pointers.replaceIn(withoutSourceLines(line.text)) + '\n';
}

}  // namespace

Log::Log(std::string_view written) {
    std::istringstream stream{std::string(written)};
    for (std::string line; std::getline(stream, line);) {
        m_lines.push_back(parseLine(line));
    }
}

Log Log::ofTags(std::initializer_list<std::string_view> tags) const {
    Log log;
    std::ranges::copy_if(m_lines, std::back_inserter(log.m_lines), [tags](const LogLine& line) {
        return std::ranges::find(tags, line.tag) != tags.end();
    });
    return log;
}

Log Log::ofPriority(std::string_view priority) const {
    Log log;
    std::ranges::copy_if(m_lines, std::back_inserter(log.m_lines),
                         [priority](const LogLine& line) { return line.priority == priority; });
    return log;
}

Log Log::from(std::string_view first) const {
    Log log;
    log.m_lines.assign(std::ranges::find_if(m_lines, Contains{first}), m_lines.end());
    return log;
}

Log Log::upTo(std::string_view last) const {
    Log log;
    const auto found = std::ranges::find_if(m_lines, Contains{last});
    if (found != m_lines.end()) {
        log.m_lines.assign(m_lines.begin(), std::next(found));
    }
    return log;
}

std::size_t Log::count(std::string_view text) const {
    return static_cast<std::size_t>(std::ranges::count_if(m_lines, Contains{text}));
}

std::vector<std::string> Log::behind(std::string_view mark) const {
    std::vector<std::string> found;
    for (const LogLine& line : m_lines) {
        const auto at = line.text.find(mark);
        if (at != std::string::npos) {
            found.push_back(line.text.substr(at + mark.size()));
        }
    }
    return found;
}

std::string Log::transcript() const {
    PointerNames pointers;
    std::string result;
    for (const LogLine& line : m_lines) {
        result += transcribe(line, pointers);
    }
    return result;
}

std::string Log::transcriptByThread() const {
    std::vector<std::string> threads;
    for (const LogLine& line : m_lines) {
        if (std::ranges::find(threads, line.thread) == threads.end()) {
            threads.push_back(line.thread);
        }
    }
    PointerNames pointers;
    std::string result;
    for (std::size_t i = 0; i < threads.size(); ++i) {
        result += "-- thread " + std::to_string(i + 1) + '\n';
        for (const LogLine& line : m_lines) {
            if (line.thread == threads[i]) {
                result += transcribe(line, pointers);
            }
        }
    }
    return result;
}

std::string Log::texts() const {
    std::string result;
    for (const LogLine& line : m_lines) {
        result += line.text + '\n';
    }
    return result;
}
