// Encodes and decodes D-Bus messages as bytes. Tests use it to send malformed requests, which the
// bus library can't make. Little-endian only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Returns the authentication that a peer sends before its first message.
std::string dbusGreeting();

/// Returns a method call. `body` is used unchanged, even if it doesn't match `signature`.
std::string dbusCall(std::uint32_t serial, const std::string& member, const std::string& signature,
                     const std::string& body);

struct DBusMessage {
    enum Type : std::uint8_t { Call = 1, Return = 2, Error = 3, Signal = 4 };

    Type type;
    std::uint32_t replySerial;  // 0 for a signal
    std::string errorName;
    std::string body;
};

/// Returns the messages after the answer to the greeting, or nothing if the bytes received are not
/// the answer and complete messages.
std::optional<std::vector<DBusMessage>> dbusMessages(std::string_view received);
