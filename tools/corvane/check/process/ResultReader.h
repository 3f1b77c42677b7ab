// Reads what the host tells: a JSON object in each line of a pipe. A plugin can write there, too,
// so nothing is taken for granted.
#pragma once

#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace corvane::check {

/// Owner: PluginProcess, on its thread. Errors: CheckError for what the host never sends, and for
/// too much.
class ResultReader {
public:
    using OnMessage = std::function<void(const nlohmann::json&)>;

    /// `onMessage` may throw what nlohmann::json throws, and std::out_of_range, at a message that
    /// isn't one.
    explicit ResultReader(OnMessage onMessage) : m_onMessage(std::move(onMessage)) {}

    enum class Outcome { Read, Nothing, End };
    /// One read from a descriptor that doesn't block.
    Outcome readFrom(int fd);

private:
    void take(std::string_view chunk);
    void takeLine();

    const OnMessage m_onMessage;
    std::string m_line;  // as far as it has been read
    std::size_t m_size = 0;
};

}  // namespace corvane::check
