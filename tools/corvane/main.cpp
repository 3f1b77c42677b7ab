// The developer's command of Corvane.
#include "EmitCommand.h"
#include "ListCommand.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    CLI::App app{"Tries out Corvane and its plugins without a device.", "corvane"};
    app.require_subcommand(1);
    app.failure_message(CLI::FailureMessage::help);
    app.footer(
        "Start the daemon with a socket for injection, then make events:\n"
        "  CORVANE_INJECT_SOCKET=/tmp/inject.sock corvaned &\n"
        "  corvane --socket /tmp/inject.sock emit bt-adapter-state-changed state=off");
    corvane::tool::addListCommand(app);
    corvane::tool::addEmitCommand(app);
    try {
        app.parse(argc, argv);
        return 0;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    } catch (const std::exception& error) {
        std::cerr << "corvane: " << error.what() << '\n';
        return 1;
    }
}
