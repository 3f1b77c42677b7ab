// Stores the log lines and the system information of the platform in the test program.
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

/// A singleton that is never destroyed, because libraries log until the process ends. Any thread.
class Recorder {
public:
    static Recorder& instance();

    void clear();
    void clearLog();
    void add(LogLine line);
    std::vector<LogLine> log() const;

    /// Waits for a line whose text contains `part`. Returns the first one, or nothing if the limit
    /// has passed.
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
