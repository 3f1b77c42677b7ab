// D-Bus as bytes, so that a request can be wrong in every way: the bus library makes no
// wrong ones. Little-endian only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a peer says before its first message.
std::string dbusGreeting();

/// A method call. `body` is sent as it is, whatever `signature` says.
std::string dbusCall(std::uint32_t serial, const std::string& member, const std::string& signature,
                     const std::string& body);

struct DBusMessage {
    enum Type : std::uint8_t { Call = 1, Return = 2, Error = 3, Signal = 4 };

    Type type;
    std::uint32_t replySerial;  // 0 for a signal
    std::string errorName;
    std::string body;
};

/// The messages behind the answer to the greeting; empty if these are no whole messages.
std::optional<std::vector<DBusMessage>> dbusMessages(std::string_view received);
