// What the platform of the test program keeps: log lines and system information.
#pragma once

#include <corvane/testkit/LogLine.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace corvane::testkit {

/// One for the process, never destroyed: libraries log until the very end. Any thread.
class Recorder {
public:
    static Recorder& instance();

    void clear();
    void clearLog();
    void add(LogLine line);
    std::vector<LogLine> log() const;

    /// The first line whose text contains `part`, as soon as there is one.
    std::optional<LogLine> wait(const std::string& part, std::chrono::milliseconds limit) const;

    void setSystemInformation(const std::string& key, int value);
    std::optional<int> systemInformation(const std::string& key) const;

private:
    Recorder() = default;

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_added;
    std::vector<LogLine> m_log;
    std::map<std::string, int> m_systemInformation;
};

}  // namespace corvane::testkit
