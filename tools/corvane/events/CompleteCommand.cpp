// corvane complete: prints the words that the shell completion offers.
#include <iostream>
#include <memory>
#include <span>
#include <utility>

#include "platform/host/events/EventTable.h"
#include "tools/corvane/Commands.h"
#include "tools/corvane/events/EventJson.h"

namespace corvane::tool {

using namespace corvane::host;

namespace {

void addKeys(std::vector<std::string>& words, std::span<const Field> fields) {
    for (const auto& field : fields) {
        if (field.kind == Kind::Record) {
            addKeys(words, field.fields);
        } else {
            words.push_back(std::string(field.name) + '=');
        }
    }
}

// Without an event: the names of all events. With an event: its "key=" words. With both: the
// values of that argument. Nothing for unknown names.
std::vector<std::string> completions(const std::string& eventName, const std::string& key) {
    std::vector<std::string> words;
    if (eventName.empty()) {
        for (const auto& event : allEvents()) {
            words.emplace_back(event.name);
        }
        return words;
    }
    const auto* const event = findEvent(eventName);
    if (event == nullptr) {
        return words;
    }
    if (key.empty()) {
        addKeys(words, event->arguments);
    } else if (const auto* const field = findField(*event, key)) {
        words = valueNames(*field);
    }
    return words;
}

}  // namespace

void addCompleteCommand(CLI::App& app) {
    auto* const command = app.add_subcommand("complete", "Print words for the shell completion");
    command->group("");  // not shown in the help
    const auto words = std::make_shared<std::pair<std::string, std::string>>();
    command->add_option("EVENT", words->first);
    command->add_option("KEY", words->second);
    command->callback([words] {
        for (const auto& word : completions(words->first, words->second)) {
            std::cout << word << '\n';
        }
    });
}

}  // namespace corvane::tool
