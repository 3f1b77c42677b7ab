// What a daemon wrote, line by line, in a form that is the same for each run.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// A line "<priority letter> <tag>: <text>", as the platform log writes it behind the time
/// and the thread. A line that isn't of that form is all text.
struct LogLine {
    std::string thread;
    std::string priority;
    std::string tag;
    std::string text;
};

/// A value; the tests' own.
class Log {
public:
    Log() = default;
    explicit Log(std::string_view written);

    const std::vector<LogLine>& lines() const { return m_lines; }

    Log ofTags(std::initializer_list<std::string_view> tags) const;
    Log ofPriority(std::string_view priority) const;
    /// From the first line that contains `first` on; up to the first line behind that
    /// which contains `last`, both included. Empty if there is no such line.
    Log from(std::string_view first) const;
    Log upTo(std::string_view last) const;

    bool contains(std::string_view text) const { return count(text) > 0; }
    std::size_t count(std::string_view text) const;
    /// What stands behind `mark` in each line that contains it.
    std::vector<std::string> behind(std::string_view mark) const;

    /// All lines, without time and thread: source lines are "#", and pointers are numbered
    /// in the order of their first appearance, "@1" and so on.
    std::string transcript() const;
    /// The same, each thread's lines by themselves behind a line that says so: for threads
    /// whose lines have no order among each other. The threads come in the order of their
    /// first lines.
    std::string transcriptByThread() const;
    /// The texts alone, each ended by a newline.
    std::string texts() const;

private:
    std::vector<LogLine> m_lines;
};
