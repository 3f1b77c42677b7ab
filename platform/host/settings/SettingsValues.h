// The kinds of values that settings have. Each function stores a value it can read and
// returns true, or returns false and leaves the setting as it was.
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

/// All of `value` is a decimal number from `least` to `most`.
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

/// From 0 to `most` milliseconds.
inline bool storeMilliseconds(std::chrono::milliseconds& setting, int most,
                              std::string_view value) {
    int number = 0;
    const bool good = storeNumber(number, 0, most, value);
    if (good) {
        setting = std::chrono::milliseconds(number);
    }
    return good;
}

/// An absolute path: a relative one would depend on where the daemon was started.
bool storePath(std::string& setting, std::string_view value);

/// Adds UUIDs in their long form, separated by commas, to those before; in small letters.
bool addUuids(std::vector<std::string>& setting, std::string_view value);

}  // namespace corvane::host
