// corvane emit: makes a running daemon deliver an event.
#include "EmitCommand.h"

#include "EmitArguments.h"
#include "InjectPeer.h"

#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace corvane::tool {

namespace {

struct Words {
    std::string socket;
    std::string event;
    std::vector<std::string> arguments;
};

std::string resultText(unsigned called) {
    if (called == 0) {
        return "nobody subscribed";
    }
    return "delivered to " + std::to_string(called) + (called == 1 ? " callback" : " callbacks");
}

void emit(const Words& words) {
    const auto& event = eventNamed(words.event);
    const auto values = parseArguments(event, words.arguments);
    const unsigned called = emitEvent(socketPath(words.socket), event, values);
    std::cout << event.name << ": " << resultText(called) << '\n';
}

}  // namespace

void addEmitCommand(CLI::App& app) {
    const auto words = std::make_shared<Words>();
    app.add_option("--socket", words->socket,
                   "Socket of the daemon; else CORVANE_INJECT_SOCKET, else\n"
                   "$XDG_RUNTIME_DIR/corvane/inject.sock, else /run/corvane/inject.sock")
        ->type_name("PATH");
    auto* const command = app.add_subcommand("emit", "Make a running daemon deliver an event");
    command->fallthrough();
    command->add_option("EVENT", words->event, "Name of the event, as `corvane list` shows it")
        ->required()
        ->type_name("");
    command
        ->add_option("ARGUMENTS", words->arguments,
                     "key=value for each argument or record field that is not to have its default")
        ->type_name("");
    command->footer(
        "Example:\n"
        "  corvane emit bt-device-bond-created remote_name=Headset service_uuid=110b,110e \\\n"
        "      manufacturer_data=0a0b is_bonded=true");
    command->callback([words] { emit(*words); });
}

}  // namespace corvane::tool
