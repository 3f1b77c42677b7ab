// Parses the values of settings.
#include "platform/host/settings/SettingsValues.h"

#include <algorithm>
#include <cstddef>

namespace corvane::host {

namespace {

bool isUuid(std::string_view text) {
    constexpr std::string_view form = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    constexpr std::string_view digits = "0123456789abcdef";
    return std::ranges::equal(text, form, [=](char c, char wanted) {
        return wanted == '-' ? c == '-' : digits.find(c) != digits.npos;
    });
}

}  // namespace

bool storePath(std::string& setting, std::string_view value) {
    if (!value.starts_with('/')) {
        return false;
    }
    setting = value;
    return true;
}

bool addUuids(std::vector<std::string>& setting, std::string_view value) {
    if (value.empty()) {
        return true;
    }
    std::vector<std::string> added;
    for (std::size_t start = 0; start <= value.size();) {
        const auto comma = std::min(value.find(',', start), value.size());
        std::string uuid;
        for (const char c : value.substr(start, comma - start)) {
            if (c != ' ' && c != '\t') {
                uuid += static_cast<char>(c >= 'A' && c <= 'F' ? c - 'A' + 'a' : c);
            }
        }
        start = comma + 1;
        if (!isUuid(uuid)) {
            return false;
        }
        added.push_back(std::move(uuid));
    }
    setting.insert(setting.end(), added.begin(), added.end());
    return true;
}

}  // namespace corvane::host
