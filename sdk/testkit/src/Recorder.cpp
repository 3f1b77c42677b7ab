#include "sdk/testkit/src/Recorder.h"

#include <algorithm>
#include <utility>

namespace corvane::testkit {

Recorder& Recorder::instance() {
    static auto* const recorder = new Recorder;
    return *recorder;
}

void Recorder::clear() {
    const std::lock_guard lock(m_mutex);
    m_log.clear();
    m_systemInformation.clear();
}

void Recorder::clearLog() {
    const std::lock_guard lock(m_mutex);
    m_log.clear();
}

void Recorder::add(LogLine line) {
    const std::lock_guard lock(m_mutex);
    m_log.push_back(std::move(line));
    m_added.notify_all();
}

std::vector<LogLine> Recorder::log() const {
    const std::lock_guard lock(m_mutex);
    return m_log;
}

std::optional<LogLine> Recorder::wait(const std::string& part,
                                      std::chrono::milliseconds limit) const {
    std::unique_lock lock(m_mutex);
    std::optional<LogLine> found;
    m_added.wait_until(lock, std::chrono::steady_clock::now() + limit, [&] {
        const auto line = std::ranges::find_if(
            m_log, [&](const LogLine& each) { return each.text.find(part) != std::string::npos; });
        if (line != m_log.end()) {
            found = *line;
        }
        return found.has_value();
    });
    return found;
}

void Recorder::setSystemInformation(const std::string& key, int value) {
    const std::lock_guard lock(m_mutex);
    m_systemInformation[key] = value;
}

std::optional<int> Recorder::systemInformation(const std::string& key) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_systemInformation.find(key);
    return found == m_systemInformation.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace corvane::testkit
