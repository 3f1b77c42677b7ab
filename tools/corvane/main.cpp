// corvane: the command for developers of plugins.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

#include "tools/corvane/Commands.h"
#include "tools/corvane/check/findings/CheckError.h"
#include "tools/corvane/play/Scenario.h"

int main(int argc, char** argv) {
    CLI::App app{"Develop and try Corvane plugins without a device.", "corvane"};
    app.require_subcommand(1);
    app.failure_message(CLI::FailureMessage::help);
    app.footer(
        "Start the daemon with an injection socket, then emit events:\n"
        "  CORVANE_INJECT_SOCKET=/tmp/corvane/inject.sock corvaned &\n"
        "  corvane --socket /tmp/corvane/inject.sock emit bt-adapter-state-changed state=off");
    std::string socket;
    app.add_option("--socket", socket,
                   "Socket of the daemon. The default is CORVANE_INJECT_SOCKET, or\n"
                   "$XDG_RUNTIME_DIR/corvane/inject.sock, or /run/corvane/inject.sock")
        ->type_name("PATH");
    corvane::tool::addListCommand(app);
    corvane::tool::addEmitCommand(app, socket);
    corvane::tool::addWatchCommand(app, socket);
    corvane::tool::addPlayCommand(app, socket);
    corvane::tool::addNewCommand(app);
    corvane::tool::addOrderCommand(app);
    int status = 0;
    corvane::tool::addCheckCommand(app, status);
    corvane::tool::addCompleteCommand(app);
    try {
        app.parse(argc, argv);
        return status;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    } catch (const corvane::tool::ScenarioError& error) {
        std::cerr << "corvane: " << error.what() << '\n';
        return 2;
    } catch (const corvane::check::CheckError& error) {
        std::cerr << "corvane: " << error.what() << '\n';
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "corvane: " << error.what() << '\n';
        return 1;
    }
}
