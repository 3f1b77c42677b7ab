// corvane order: prints which plugins the daemon would load, in which order and why.
#include <algorithm>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "daemon/src/PluginPath.h"
#include "tools/corvane/Commands.h"
#include "tools/corvane/common/Exposure.h"
#include "tools/corvane/common/Printable.h"
#include "tools/corvane/order/LoadOrder.h"

namespace corvane::tool {

namespace {

using PluginPriorityChecker::Rule;

struct Reason {
    const char* rule;  // in JSON
    std::string text;
};

Reason reasonOf(Rule rule) {
    switch (rule) {
        case Rule::Ordinary:
            return {"ordinary", "no rule for this name"};
        case Rule::BleApplication:
            return {"name", "rule for this name"};
        case Rule::LiteWithMarker:
            return {"marker-present",
                    "rule for this name; the marker file exists: " CORVANE_MARKER_FILE};
        case Rule::LiteWithoutMarker:
            return {"marker-missing",
                    "rule for this name; there is no marker file: " CORVANE_MARKER_FILE};
        case Rule::DongleSupported:
            return {"product-type", "rule for this name; products of this type have the dongle"};
        case Rule::DongleNotSupported:
            break;
    }
    return {"product-type-other",
            "rule for this name; the product type is unknown, or its products lack the dongle"};
}

Reason reasonOf(const OrderedFile& file) {
    auto reason = reasonOf(file.decision.rule);
    if (!file.problem.empty()) {
        reason.text += "; " + file.problem;
    }
    return reason;
}

Reason reasonOf(const FileManager::Entry& entry) {
    switch (entry.candidacy) {
        case FileManager::Candidacy::Unreachable:
            return {"unreachable", std::string("can't be examined: ") + std::strerror(entry.error)};
        case FileManager::Candidacy::NotARegularFile:
            return {"not-a-regular-file", "not a regular file"};
        default:
            return {"other-suffix", "the name doesn't end in \".so\""};
    }
}

// Priorities that more than one candidate has.
std::set<int> ties(const LoadOrder& order) {
    std::set<int> seen;
    std::set<int> repeated;
    for (const auto& file : order.files) {
        if (!seen.insert(file.getPriority()).second) {
            repeated.insert(file.getPriority());
        }
    }
    return repeated;
}

std::string textOf(const LoadOrder& order) {
    std::size_t width = 4;
    for (const auto& file : order.files) {
        width = std::max(width, printable(file.name).size());
    }
    for (const auto& entry : order.skipped) {
        width = std::max(width, printable(entry.name).size());
    }
    std::ostringstream text;
    const auto row = [&](const auto& place, const auto& priority, const auto& found,
                         const std::string& name, const std::string& why) {
        text << std::left << std::setw(6) << place << std::setw(10) << priority << std::setw(7)
             << found << std::setw(static_cast<int>(width) + 2) << printable(name) << why << '\n';
    };
    text << printable(order.directory) << '\n';
    if (order.files.empty()) {
        text << "The daemon would load no plugin.\n";
    } else {
        row("LOAD", "PRIORITY", "FOUND", "FILE", "WHY");
    }
    for (std::size_t i = 0; i < order.files.size(); ++i) {
        const auto& file = order.files[i];
        row(i + 1, file.getPriority(), file.found, file.name, reasonOf(file).text);
    }
    for (const auto& entry : order.skipped) {
        row("-", "-", "-", entry.name, reasonOf(entry).text);
    }
    if (!ties(order).empty()) {
        text
            << "\nThe load order of plugins of equal priority depends on the order in which the\n"
               "directory lists them (FOUND). Don't rely on it: copying the files may change it.\n";
    }
    return text.str();
}

std::string jsonOf(const LoadOrder& order) {
    nlohmann::ordered_json json{{"directory", order.directory},
                                {"order", nlohmann::ordered_json::array()},
                                {"skipped", nlohmann::ordered_json::array()},
                                {"ties", ties(order)},
                                {"exposed", order.exposed}};
    for (const auto& file : order.files) {
        const auto reason = reasonOf(file);
        json["order"].push_back({{"file", file.name},
                                 {"priority", file.getPriority()},
                                 {"found", file.found},
                                 {"rule", reason.rule},
                                 {"why", reason.text}});
    }
    for (const auto& entry : order.skipped) {
        const auto reason = reasonOf(entry);
        json["skipped"].push_back(
            {{"file", entry.name}, {"rule", reason.rule}, {"why", reason.text}});
    }
    return json.dump(2, ' ', true, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

}  // namespace

void addOrderCommand(CLI::App& app) {
    auto* const command =
        app.add_subcommand("order", "Show which plugins the daemon would load, and in which order");
    const auto directory = std::make_shared<std::string>(PLUGIN_PATH);
    const auto asJson = std::make_shared<bool>(false);
    command->add_option("DIR", *directory, "Plugin directory. The default is " + PLUGIN_PATH)
        ->type_name("");
    command->add_flag("--json", *asJson, "Print a JSON object");
    command->footer(
        "Nothing is loaded. Example:\n"
        "  corvane order /usr/share/corvane/plugins");
    command->callback([directory, asJson] {
        const auto order = readLoadOrder(*directory);
        std::cout << (*asJson ? jsonOf(order) : textOf(order));
        if (!*asJson) {
            warnOf(order.exposed);
        }
    });
}

}  // namespace corvane::tool
