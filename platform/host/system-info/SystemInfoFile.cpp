// Reads the file with the machine's named integers.
#include "platform/host/system-info/SystemInfoFile.h"

#include <dlog.h>

#include <charconv>
#include <cstddef>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "platform/host/settings/FileText.h"

namespace corvane::host {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

int parseInteger(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        throw std::runtime_error("the value is out of the range of an integer");
    }
    if (error != std::errc() || end != text.data() + text.size()) {
        throw std::runtime_error("the value is not an integer");
    }
    return value;
}

struct Entry {
    std::string_view key;
    int value;
};

std::optional<Entry> parseLine(std::string_view line) {
    const auto content = trimmed(line.substr(0, line.find('#')));
    if (content.empty()) {
        return std::nullopt;
    }
    const auto equals = content.find('=');
    if (equals == std::string_view::npos) {
        throw std::runtime_error("there is no '='; a line is \"key = integer\"");
    }
    const auto key = trimmed(content.substr(0, equals));
    if (key.empty()) {
        throw std::runtime_error("there is no key in front of the '='");
    }
    return Entry{key, parseInteger(trimmed(content.substr(equals + 1)))};
}

}  // namespace

std::optional<int> readSystemInfo(const std::string& path, std::string_view key) {
    const auto file = readFileText(path);
    if (file.isCut) {
        dlog_print(DLOG_PRIORITY_ERROR, "SYSTEM_INFO",
                   "%s: has more than %zu bytes; what is behind is not read", path.c_str(),
                   mostFileBytes);
    }
    std::istringstream lines(file.text);
    std::optional<int> found;
    std::string line;
    for (std::size_t number = 1; std::getline(lines, line); ++number) {
        try {
            const auto entry = parseLine(line);
            if (entry && entry->key == key) {
                found = entry->value;
            }
        } catch (const std::runtime_error& error) {
            dlog_print(DLOG_PRIORITY_ERROR, "SYSTEM_INFO", "%s:%zu: %s", path.c_str(), number,
                       error.what());
        }
    }
    return found;
}

}  // namespace corvane::host
