// An event and its arguments on a command line.
#include "platform/host/events/EventArguments.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>
#include <stdexcept>
#include <utility>

#include "platform/host/events/ValueText.h"

namespace corvane::host {

namespace {

// The edit distance: how many letters to change, add or remove to make one text the other.
std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (const char letter : from) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (letter == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

std::string nearNames(std::string_view name) {
    constexpr std::size_t most = 3;
    std::vector<std::pair<std::size_t, const char*>> names;
    for (const auto& event : allEvents()) {
        names.emplace_back(distance(name, event.name), event.name);
    }
    std::ranges::stable_sort(names, {}, &std::pair<std::size_t, const char*>::first);
    std::string text;
    for (const auto& near : std::span(names).first(std::min(most, names.size()))) {
        text += std::string("\n  ") + near.second;
    }
    return text;
}

std::string argumentNames(std::span<const Field> fields) {
    std::string names;
    for (const auto& field : fields) {
        names += names.empty() ? "" : ", ";
        names += field.kind == Kind::Record ? argumentNames(field.fields) : field.name;
    }
    return names;
}

}  // namespace

const Event& eventNamed(std::string_view name) {
    const auto* const event = findEvent(name);
    if (event == nullptr) {
        throw std::runtime_error("there is no event \"" + std::string(name) +
                                 "\"; the nearest names are" + nearNames(name) +
                                 "\n`corvane list` shows all");
    }
    return *event;
}

Values parseArguments(const Event& event, const std::vector<std::string>& words) {
    Values values(event);
    for (const auto& word : words) {
        const auto equals = word.find('=');
        const auto key = word.substr(0, equals);
        const auto* const field = findField(event, key);
        if (equals == std::string::npos) {
            throw std::runtime_error("\"" + word + "\" is not of the form key=value");
        }
        if (field == nullptr) {
            throw std::runtime_error(std::string(event.name) + " has no argument \"" + key +
                                     "\"; its arguments are " + argumentNames(event.arguments));
        }
        values.set(*field, parseValue(*field, word.substr(equals + 1)));
    }
    return values;
}

}  // namespace corvane::host
