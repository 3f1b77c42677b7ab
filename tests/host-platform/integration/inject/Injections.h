// Every event that can be injected, as the tests make it: by the tool and by a raw
// call, with what the event-log plugin writes of it.
#pragma once

#include <span>
#include <string>
#include <vector>

using Words = std::vector<std::string>;

struct Injection {
    const char* event;
    const char* method;
    Words arguments;       // of `corvane emit`
    Words call;            // the same for `busctl call`: types and values
    const char* defaults;  // what the plugin writes of the event without arguments
    const char* expected;  // and with them
};

std::span<const Injection> adapterAndDeviceInjections();
std::span<const Injection> profileInjections();
std::span<const Injection> televisionInjections();
