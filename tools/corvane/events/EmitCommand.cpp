// corvane emit: makes a running daemon deliver an event.
#include <iostream>
#include <memory>
#include <vector>

#include "platform/host/events/EventArguments.h"
#include "tools/corvane/Commands.h"
#include "tools/corvane/events/InjectClient.h"

namespace corvane::tool {

namespace {

struct Words {
    std::string event;
    std::vector<std::string> arguments;
};

void emit(const std::string& socket, const Words& words) {
    const auto& event = host::eventNamed(words.event);
    const auto values = host::parseArguments(event, words.arguments);
    InjectClient daemon(socketPath(socket));
    const unsigned called = daemon.emit(event, values);
    std::cout << event.name << ": " << deliveredText(called) << '\n';
}

}  // namespace

void addEmitCommand(CLI::App& app, const std::string& socket) {
    const auto words = std::make_shared<Words>();
    auto* const command = app.add_subcommand("emit", "Make a running daemon deliver an event");
    command->fallthrough();
    command->add_option("EVENT", words->event, "Name of the event, as `corvane list` shows it")
        ->required()
        ->type_name("");
    command
        ->add_option("ARGUMENTS", words->arguments,
                     "key=value for an argument or record field that differs from its default")
        ->type_name("");
    command->footer(
        "Example:\n"
        "  corvane emit bt-device-bond-created remote_name=Headset service_uuid=110b,110e \\\n"
        "      manufacturer_data=0a0b is_bonded=true");
    command->callback([words, &socket] { emit(socket, *words); });
}

}  // namespace corvane::tool
