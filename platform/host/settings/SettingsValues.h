// Parses the values of settings. Each function stores a valid value and returns true, or
// returns false and leaves the setting unchanged.
#pragma once

#include <charconv>
#include <chrono>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace corvane::host {

template <typename Value>
struct Named {
    std::string_view name;
    Value value;
};
template <typename Value>
Named(const char*, Value) -> Named<Value>;

template <typename Setting, typename Names>
bool storeNamed(Setting& setting, const Names& names, std::string_view value) {
    for (const auto& named : names) {
        if (named.name == value) {
            setting = named.value;
            return true;
        }
    }
    return false;
}

/// A decimal number from `least` to `most`.
template <typename Number>
bool storeNumber(Number& setting, Number least, Number most, std::string_view value) {
    Number number{};
    const char* const end = value.data() + value.size();
    const auto [stopped, error] = std::from_chars(value.data(), end, number);
    if (error != std::errc() || stopped != end || number < least || number > most) {
        return false;
    }
    setting = number;
    return true;
}

/// 0 to `most` milliseconds.
inline bool storeMilliseconds(std::chrono::milliseconds& setting, int most,
                              std::string_view value) {
    int number = 0;
    const bool good = storeNumber(number, 0, most, value);
    if (good) {
        setting = std::chrono::milliseconds(number);
    }
    return good;
}

/// An absolute path. A relative one would depend on the daemon's working directory.
bool storePath(std::string& setting, std::string_view value);

/// Appends UUIDs in their long form, separated by commas, in lower case.
bool addUuids(std::vector<std::string>& setting, std::string_view value);

}  // namespace corvane::host
