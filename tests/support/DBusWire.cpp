#include "tests/support/DBusWire.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace {

enum HeaderField : std::uint8_t {
    Path = 1,
    Interface = 2,
    Member = 3,
    ErrorName = 4,
    ReplySerial = 5,
    Signature = 8
};

void pad(std::string& bytes) {
    bytes.resize((bytes.size() + 7) / 8 * 8);
}

void appendNumber(std::string& bytes, std::size_t number) {
    const auto value = static_cast<std::uint32_t>(number);
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void appendField(std::string& bytes, HeaderField field, char type, const std::string& value) {
    pad(bytes);
    bytes += {static_cast<char>(field), 1, type, 0};
    if (type == 'g') {
        bytes += static_cast<char>(value.size());
    } else {
        appendNumber(bytes, value.size());
    }
    bytes += value + '\0';
}

std::uint32_t numberAt(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    if (at + sizeof value <= bytes.size()) {
        std::memcpy(&value, bytes.data() + at, sizeof value);
    }
    return value;
}

std::size_t padded(std::size_t size) {
    return (size + 7) / 8 * 8;
}

// Reads the header fields of an answer. Skips other fields.
void readFields(std::string_view header, DBusMessage& message) {
    for (std::size_t at = 16; at + 8 <= header.size();) {
        const auto field = header[at];
        const bool isSignature = header[at + 2] == 'g';
        if (field == ReplySerial) {
            message.replySerial = numberAt(header, at + 4);
            at += 8;
            continue;
        }
        const std::size_t size =
            isSignature ? static_cast<unsigned char>(header[at + 4]) : numberAt(header, at + 4);
        const std::size_t start = at + (isSignature ? 5 : 8);
        if (field == ErrorName) {
            message.errorName = header.substr(start, size);
        }
        at = padded(start + size + 1);
    }
}

}  // namespace

std::string dbusGreeting() {
    std::string user;
    for (const char digit : std::to_string(geteuid())) {
        user += {'3', digit};
    }
    return std::string(1, '\0') + "AUTH EXTERNAL " + user + "\r\nBEGIN\r\n";
}

std::string dbusCall(std::uint32_t serial, const std::string& member, const std::string& signature,
                     const std::string& body) {
    std::string message{'l', DBusMessage::Call, 0, 1};
    appendNumber(message, body.size());
    appendNumber(message, serial);
    appendNumber(message, 0);
    appendField(message, Path, 'o', "/org/corvane/Inject");
    appendField(message, Interface, 's', "org.corvane.Inject1");
    appendField(message, Member, 's', member);
    if (!signature.empty()) {
        appendField(message, Signature, 'g', signature);
    }
    std::string fieldsSize;
    appendNumber(fieldsSize, message.size() - 16);
    message.replace(12, 4, fieldsSize);
    pad(message);
    return message + body;
}

std::optional<std::vector<DBusMessage>> dbusMessages(std::string_view received) {
    std::vector<DBusMessage> messages;
    const auto greeted = received.find("\r\n");
    if (!received.starts_with("OK ") || greeted == received.npos) {
        return std::nullopt;
    }
    received.remove_prefix(greeted + 2);
    while (!received.empty()) {
        const std::size_t header = padded(16 + std::size_t{numberAt(received, 12)});
        const std::size_t size = header + numberAt(received, 4);
        if (received[0] != 'l' || size > received.size()) {
            return std::nullopt;
        }
        DBusMessage message{static_cast<DBusMessage::Type>(received[1]), 0, "",
                            std::string(received.substr(header, size - header))};
        readFields(received.substr(0, header), message);
        messages.push_back(std::move(message));
        received.remove_prefix(size);
    }
    return messages;
}
