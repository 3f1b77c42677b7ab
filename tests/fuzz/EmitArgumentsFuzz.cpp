// Fuzzes the arguments of `corvane emit`. Either they are rejected with a reason, or the daemon
// reads exactly the given values from the message.
#include <sys/socket.h>
#include <systemd/sd-bus.h>

#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/host/events/EventArguments.h"
#include "platform/host/inject/MessageValues.h"
#include "tests/fuzz/EventWords.h"
#include "tests/fuzz/Input.h"
#include "tools/corvane/events/EmitMessage.h"

namespace {

using namespace corvane::host;

struct Release {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};

/// Returns a connection for which messages can be created. Nothing is sent.
sd_bus* makeBus() {
    int ends[2];
    REQUIRE(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) == 0);
    sd_bus* bus = nullptr;
    REQUIRE(sd_bus_new(&bus) >= 0);
    REQUIRE(sd_bus_set_fd(bus, ends[0], ends[0]) >= 0);
    REQUIRE(sd_bus_start(bus) >= 0);
    return bus;
}

sd_bus* bus() {
    static const std::unique_ptr<sd_bus, Release> made(makeBus());
    return made.get();
}

void requireSameBehindMessage(const Event& event, const Values& values) {
    sd_bus_message* made = nullptr;
    REQUIRE(sd_bus_message_new_method_call(bus(), &made, nullptr, "/path", nullptr, "Member") >= 0);
    const std::unique_ptr<sd_bus_message, Release> message(made);
    try {
        corvane::tool::appendArguments(made, event.arguments, values);
    } catch (const std::runtime_error& error) {
        REQUIRE(std::string(error.what()).find("UTF-8") != std::string::npos);
        return;
    }
    REQUIRE(sd_bus_message_seal(made, 1, 0) >= 0);
    REQUIRE(sd_bus_message_rewind(made, 1) >= 0);
    REQUIRE(wordsOf(event, readValues(made, event)) == wordsOf(event, values));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto index = input.byte();
    std::string text = input.rest();
    std::erase(text, '\0');  // a command line can't contain zero bytes
    std::istringstream lines(text);
    std::string name;
    if (index < allEvents().size()) {
        name = allEvents()[index].name;
    } else {
        std::getline(lines, name);
    }
    std::vector<std::string> words;
    for (std::string line; std::getline(lines, line);) {
        words.push_back(line);
    }
    const Event* event = nullptr;
    std::optional<Values> values;
    try {
        event = &eventNamed(name);
        values = parseArguments(*event, words);
    } catch (const std::runtime_error& error) {
        REQUIRE(error.what()[0] != '\0');
        return 0;
    }
    REQUIRE(name == event->name);
    const auto written = wordsOf(*event, *values);
    REQUIRE(wordsOf(*event, parseArguments(*event, written)) == written);
    requireSameBehindMessage(*event, *values);
    return 0;
}
