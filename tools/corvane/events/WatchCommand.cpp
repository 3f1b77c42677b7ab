// corvane watch: prints when callbacks of a running daemon are set, unset and called.
#include <iostream>
#include <memory>

#include "tools/corvane/Commands.h"
#include "tools/corvane/common/StopSignals.h"
#include "tools/corvane/events/EventJson.h"
#include "tools/corvane/events/InjectClient.h"

namespace corvane::tool {

namespace {

const char* wordFor(Notice::Change change) {
    switch (change) {
        case Notice::Change::Set:
            return "set";
        case Notice::Change::Unset:
            return "unset";
        case Notice::Change::Delivered:
            break;
    }
    return "delivered";
}

std::string lineOf(const Notice& notice) {
    std::string line = wordFor(notice.change);
    line += ' ' + notice.event;
    if (notice.change == Notice::Change::Delivered) {
        line += notice.called == 0   ? ": no plugin has subscribed"
                : notice.called == 1 ? ": 1 callback"
                                     : ": " + std::to_string(notice.called) + " callbacks";
    }
    return line;
}

// The object of `corvane list`, with the change added.
std::string jsonOf(const Notice& notice) {
    nlohmann::ordered_json object{{"change", wordFor(notice.change)}};
    const auto* const event = corvane::host::findEvent(notice.event);
    object.update(event == nullptr ? nlohmann::ordered_json{{"name", notice.event}}
                                   : eventJson(*event));
    if (notice.change == Notice::Change::Delivered) {
        object["called"] = notice.called;
    }
    return object.dump();
}

void watch(const std::string& path, bool asJson) {
    const auto show = [&](const Notice& notice) {
        std::cout << (asJson ? jsonOf(notice) : lineOf(notice)) << std::endl;
    };
    const StopSignals stop;
    InjectClient daemon(path);
    for (const auto& event : daemon.watch()) {
        show({Notice::Change::Set, event});
    }
    while (const auto notice = daemon.nextNotice({}, stop.fd())) {
        show(*notice);
    }
}

}  // namespace

void addWatchCommand(CLI::App& app, const std::string& socket) {
    auto* const command =
        app.add_subcommand("watch", "Show when callbacks are set, unset and called");
    command->fallthrough();
    const auto asJson = std::make_shared<bool>(false);
    command->add_flag("--json", *asJson, "Print a JSON object on each line");
    command->footer(
        "Prints the events whose callbacks are set, then each callback that is set or unset and\n"
        "each event that is delivered, from any source. The status is 0 after Ctrl+C, and 1 if\n"
        "the daemon closes the connection.");
    command->callback([asJson, &socket] { watch(socketPath(socket), *asJson); });
}

}  // namespace corvane::tool
