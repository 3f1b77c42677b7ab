// corvane play: plays a scenario of events against a running daemon.
#include <fstream>
#include <iostream>
#include <memory>

#include "tools/corvane/Commands.h"
#include "tools/corvane/play/Player.h"
#include "tools/corvane/play/Scenario.h"

namespace corvane::tool {

namespace {

std::vector<Step> readScenario(const std::string& file) {
    if (file == "-") {
        return parseScenario(std::cin, "standard input");
    }
    std::ifstream input(file);
    if (!input) {
        throw ScenarioError(file + " can't be read");
    }
    return parseScenario(input, file);
}

void play(const std::string& path, const std::string& file) {
    const auto steps = readScenario(file);
    Player player(path, file == "-" ? "standard input" : file);
    player.play(steps);
    if (player.failed() > 0) {
        throw std::runtime_error(std::to_string(player.failed()) + " of " +
                                 std::to_string(player.expected()) + " expectations failed");
    }
    std::cout << "all expectations held: " << player.expected() << '\n';
}

}  // namespace

void addPlayCommand(CLI::App& app, const std::string& socket) {
    auto* const command = app.add_subcommand("play", "Play a scenario of events");
    command->fallthrough();
    const auto file = std::make_shared<std::string>();
    command->add_option("FILE", *file, "File with the scenario; - reads the standard input")
        ->required()
        ->type_name("");
    command->footer(
        "Steps of a scenario, one on each line:\n"
        "  emit EVENT key=value...    # as `corvane emit`; put values with blanks in \"...\"\n"
        "  wait MS\n"
        "  repeat COUNT               # repeats the lines up to `end`\n"
        "  expect EVENT delivered COUNT [within MS]\n"
        "  expect EVENT set|unset [within MS]\n"
        "The status is 0 if all expectations held, 1 if one failed, and 2 if the scenario\n"
        "contains a mistake.");
    command->callback([file, &socket] { play(socketPath(socket), *file); });
}

}  // namespace corvane::tool
