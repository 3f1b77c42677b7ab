// Reads the messages of corvane-check-runner from a pipe: a JSON object on each line. The plugin
// can write to the pipe as well, so every message is validated.
#pragma once

#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace corvane::check {

/// Owner: PluginProcess, on its thread. Errors: CheckError for a malformed message, and for too
/// many.
class ResultReader {
public:
    using OnMessage = std::function<void(const nlohmann::json&)>;

    /// `onMessage` throws an exception of nlohmann::json or std::out_of_range for a malformed
    /// message.
    explicit ResultReader(OnMessage onMessage) : m_onMessage(std::move(onMessage)) {}

    enum class Outcome { Read, Nothing, End };
    /// Reads once from a non-blocking descriptor.
    Outcome readFrom(int fd);

private:
    void take(std::string_view chunk);
    void takeLine();

    const OnMessage m_onMessage;
    std::string m_line;  // the incomplete last line
    std::size_t m_size = 0;
};

}  // namespace corvane::check
