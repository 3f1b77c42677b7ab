// corvane list: prints the events and their arguments.
#include "tools/corvane/events/ListCommand.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "tools/corvane/Commands.h"
#include "tools/corvane/events/EventJson.h"

namespace corvane::tool {

namespace {

using namespace corvane::host;

using Row = std::vector<std::string>;

std::string joinedNames(const Field& field) {
    std::string names;
    for (const auto& name : valueNames(field)) {
        names += (names.empty() ? "" : "|") + name;
    }
    return names;
}

void addRows(std::vector<Row>& rows, std::span<const Field> fields, const std::string& record) {
    for (const auto& field : fields) {
        if (field.kind == Kind::Record) {
            addRows(rows, field.fields, field.name);
        } else {
            rows.push_back(
                {field.name, record, typeName(field.kind), field.defaultText, joinedNames(field)});
        }
    }
}

std::string joined(const Row& row, const std::vector<std::size_t>& widths) {
    std::string line = "  ";
    for (std::size_t i = 0; i < row.size(); ++i) {
        line += row[i] + std::string(widths[i] - row[i].size() + 2, ' ');
    }
    return line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
}

}  // namespace

std::string listText() {
    const Row headings{"ARGUMENT", "OF RECORD", "TYPE", "DEFAULT", "ALLOWED"};
    std::vector<Row> all{headings};
    for (const auto& event : allEvents()) {
        addRows(all, event.arguments, "");
    }
    std::vector<std::size_t> widths(headings.size());
    for (const auto& row : all) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    std::string text = joined(headings, widths);
    for (const auto& event : allEvents()) {
        text += '\n' + std::string(event.name) + ": " + event.meaning + '\n';
        std::vector<Row> rows;
        addRows(rows, event.arguments, "");
        for (const auto& row : rows) {
            text += joined(row, widths);
        }
    }
    return text;
}

std::string listJson() {
    auto list = nlohmann::ordered_json::array();
    for (const auto& event : allEvents()) {
        list.push_back(eventJson(event));
    }
    return list.dump(2) + '\n';
}

void addListCommand(CLI::App& app) {
    auto* const command = app.add_subcommand("list", "Show the events and their arguments");
    const auto asJson = std::make_shared<bool>(false);
    command->add_flag("--json", *asJson, "Print a JSON array with an object for each event");
    command->callback([asJson] { std::cout << (*asJson ? listJson() : listText()); });
}

}  // namespace corvane::tool
