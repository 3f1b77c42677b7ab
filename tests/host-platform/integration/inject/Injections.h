// The table of all events that can be injected. Each row has the arguments for the tool and for a
// raw D-Bus call, and the text that the event-log plugin is expected to log.
#pragma once

#include <span>
#include <string>
#include <vector>

using Words = std::vector<std::string>;

struct Injection {
    const char* event;
    const char* method;
    Words arguments;       // for `corvane emit`
    Words call;            // the same for `busctl call`: types and values
    const char* defaults;  // the expected text without arguments; null: not tested
    const char* expected;  // the expected text with the arguments
};

std::span<const Injection> adapterAndDeviceInjections();
std::span<const Injection> profileInjections();
std::span<const Injection> televisionInjections();
