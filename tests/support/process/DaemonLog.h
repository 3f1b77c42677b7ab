// The log of a daemon, line by line, and transcripts of it that are the same for each run.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// A line "<time> <thread> <priority letter> <tag>: <text>" of the platform log. For a line of
/// another form only `text` is set, to the whole line.
struct LogLine {
    std::string thread;
    std::string priority;
    std::string tag;
    std::string text;
};

/// A value type. Owner: the test.
class Log {
public:
    Log() = default;
    explicit Log(std::string_view written);

    const std::vector<LogLine>& lines() const { return m_lines; }

    Log ofTags(std::initializer_list<std::string_view> tags) const;
    Log ofPriority(std::string_view priority) const;
    /// Return the lines from the first one that contains `first`, or up to the first one that
    /// contains `last`, each inclusive. Empty if there is no such line.
    Log from(std::string_view first) const;
    Log upTo(std::string_view last) const;

    bool contains(std::string_view text) const { return count(text) > 0; }
    std::size_t count(std::string_view text) const;
    /// Returns the text after `mark` of each line that contains `mark`.
    std::vector<std::string> behind(std::string_view mark) const;

    /// Returns all lines without time and thread. Source line numbers are replaced by "#", pointers
    /// by "@1", "@2" and so on in the order of their first appearance.
    std::string transcript() const;
    /// The same, grouped by thread, with a heading for each. For threads whose lines interleave
    /// differently in each run. The threads are in the order of their first lines.
    std::string transcriptByThread() const;
    /// Returns only the texts, each followed by a newline.
    std::string texts() const;

private:
    std::vector<LogLine> m_lines;
};
