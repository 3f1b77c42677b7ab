// corvane watch: shows what happens to the callbacks of a running daemon.
#include "tools/corvane/events/WatchCommand.h"

#include <iostream>
#include <memory>

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
        line += notice.called == 0   ? ": nobody subscribed"
                : notice.called == 1 ? ": 1 callback"
                                     : ": " + std::to_string(notice.called) + " callbacks";
    }
    return line;
}

// The object of `corvane list`, with what happened.
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
    auto* const command = app.add_subcommand("watch", "Show what happens to the callbacks");
    command->fallthrough();
    const auto asJson = std::make_shared<bool>(false);
    command->add_flag("--json", *asJson, "A JSON object in each line");
    command->footer(
        "First the events that are set, then what is set, unset and delivered, wherever the\n"
        "event comes from. Ends with status 0 on Ctrl+C, with 1 when the daemon has gone.");
    command->callback([asJson, &socket] { watch(socketPath(socket), *asJson); });
}

}  // namespace corvane::tool
