// Reads the messages of corvane-check-runner.
#include "tools/corvane/check/process/ResultReader.h"

#include <limits.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>

#include "tools/corvane/check/findings/CheckError.h"
#include "tools/corvane/common/Printable.h"

namespace corvane::check {

namespace {

// A plugin that subscribes to all events needs a tenth of it.
constexpr std::size_t MAX_MEBIBYTES = 4;
// The runner writes each line atomically.
constexpr std::size_t MAX_LINE_BYTES = PIPE_BUF;

[[noreturn]] void refuse(const std::string& line) {
    constexpr std::size_t maxShownBytes = 100;
    throw CheckError("the check failed: a result of the plugin's process is malformed: " +
                     tool::printable(line.substr(0, maxShownBytes)));
}

}  // namespace

ResultReader::Outcome ResultReader::readFrom(int fd) {
    std::array<char, 65536> buffer;
    const auto size = read(fd, buffer.data(), buffer.size());
    if (size < 0) {
        return errno == EINTR ? Outcome::Read : Outcome::Nothing;
    }
    if (size == 0) {
        return Outcome::End;
    }
    m_size += static_cast<std::size_t>(size);
    if (m_size > MAX_MEBIBYTES << 20) {
        throw CheckError("the check failed: the plugin's process sent more than " +
                         std::to_string(MAX_MEBIBYTES) + " MiB of results");
    }
    take({buffer.data(), static_cast<std::size_t>(size)});
    return Outcome::Read;
}

void ResultReader::take(std::string_view chunk) {
    while (!chunk.empty()) {
        const auto end = std::min(chunk.find('\n'), chunk.size());
        m_line += chunk.substr(0, end);
        if (m_line.size() > MAX_LINE_BYTES) {
            refuse(m_line);
        }
        if (end == chunk.size()) {
            return;
        }
        takeLine();
        m_line.clear();
        chunk.remove_prefix(end + 1);
    }
}

void ResultReader::takeLine() {
    if (m_line.empty()) {
        return;  // the crash handler begins with a newline
    }
    try {
        m_onMessage(nlohmann::json::parse(m_line));
    } catch (const nlohmann::json::exception&) {
        refuse(m_line);
    } catch (const std::out_of_range&) {
        refuse(m_line);
    }
}

}  // namespace corvane::check
