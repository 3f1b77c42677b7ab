// A line of the file is "key = integer", a comment from '#' to its end, or blank.
#include "platform/host/system-info/SystemInfoFile.h"

#include <dlog.h>
#include <stdlib.h>

#include <charconv>
#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/host/settings/FileText.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

namespace {

struct Line {
    std::string_view key;  // empty: the line has none
    int value = 0;
    const char* error = nullptr;
};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

Line parseLine(std::string_view line) {
    const auto content = trimmed(line.substr(0, line.find('#')));
    if (content.empty()) {
        return {};
    }
    const auto equals = content.find('=');
    if (equals == std::string_view::npos) {
        return {"", 0, "there is no '='; a line is \"key = integer\""};
    }
    const auto key = trimmed(content.substr(0, equals));
    if (key.empty()) {
        return {"", 0, "there is no key before the '='"};
    }
    const auto text = trimmed(content.substr(equals + 1));
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        return {"", 0, "the value is out of the range of an integer"};
    }
    if (error != std::errc() || end != text.data() + text.size()) {
        return {"", 0, "the value is not an integer"};
    }
    return {key, value, nullptr};
}

// Returns the last value of the key, or nothing without such a file or key. Logs the lines
// that it cannot use.
std::optional<int> findInFile(const std::string& path, std::string_view key) {
    const auto file = readFileText(path);
    if (file.isCut) {
        dlog_print(DLOG_PRIORITY_ERROR, "SYSTEM_INFO",
                   "%s: has more than %zu bytes; the rest is ignored", path.c_str(),
                   MAX_FILE_BYTES);
    }
    std::istringstream lines(file.text);
    std::optional<int> found;
    std::string text;
    for (std::size_t number = 1; std::getline(lines, text); ++number) {
        const auto line = parseLine(text);
        if (line.error != nullptr) {
            dlog_print(DLOG_PRIORITY_ERROR, "SYSTEM_INFO", "%s:%zu: %s", path.c_str(), number,
                       line.error);
        } else if (!line.key.empty() && line.key == key) {
            found = line.value;
        }
    }
    return found;
}

}  // namespace

std::optional<int> findSystemInfo(const char* key) {
    if (const char* const path = secure_getenv("CORVANE_SYSTEM_INFO")) {
        if (const auto found = findInFile(path, key)) {
            return found;
        }
    }
    const auto& integers = settings().systemInfo;
    const auto place = integers.find(key);
    return place == integers.end() ? std::nullopt : std::optional(place->second);
}

}  // namespace corvane::host
