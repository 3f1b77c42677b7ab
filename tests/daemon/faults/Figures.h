// The measurements of the device-fault tests, and their lengths. The tests are short unless
// environment variables set other lengths.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

/// The limit for every start and every end of a daemon.
constexpr std::chrono::seconds HANG{20};

/// Returns the number in the environment variable, or `usual` if it is not set.
inline int lengthOf(const char* variable, int usual) {
    const char* const text = std::getenv(variable);
    return text == nullptr ? usual : std::atoi(text);
}

/// Counts runs and keeps the duration of the longest one.
class Longest {
public:
    using Clock = std::chrono::steady_clock;

    void add(Clock::time_point since) {
        m_longest = std::max(m_longest, Clock::now() - since);
        ++m_runs;
    }
    std::string text() const {
        std::ostringstream out;
        out << std::chrono::duration_cast<std::chrono::milliseconds>(m_longest).count() << " ms in "
            << m_runs << (m_runs == 1 ? " run" : " runs");
        return out.str();
    }
    int runs() const { return m_runs; }

private:
    Clock::duration m_longest{};
    int m_runs = 0;
};

/// Prints a line that script/prove records.
inline void printFigure(const std::string& text) {
    std::cout << "figure: " << text << std::endl;
}
