// The settings of the host platform: the file /etc/corvane/platform.conf, or the one
// that CORVANE_PLATFORM_CONF names. docs/settings.md describes every key.
#pragma once

#include <sound_manager_tv.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace corvane::host {

enum class LogOutput { automatic, standardError, journal, file };

/// A row of the table from sinks to routes.
struct SinkRoute {
    std::string pattern;  // as of fnmatch(3), over the sink's name
    sound_tv_output_route_e route;
};

struct Settings {
    struct Log {
        LogOutput output = LogOutput::automatic;
        std::string file;
        std::chrono::milliseconds flush{100};  // how long a file may lack a line; 0: not at all
        int level = 0;                         // the lowest priority that is written; 0: all
    };
    struct Inject {
        std::string socket;    // empty: no injection
        unsigned threads = 0;  // 0: events are delivered by the main loop
    };
    struct Callbacks {
        std::chrono::milliseconds slow{100};  // a callback that takes longer is reported; 0: none
    };
    struct Bluez {
        std::string agent;  // its capability, as BlueZ spells it; empty: no agent
        bool agentAccepts = false;
        bool agentIsDefault = false;
        std::vector<std::string> profiles;  // UUIDs
        std::string inputDirectory = "/dev/input";
    };
    struct Sound {
        std::string server;  // empty: where the library finds one
        std::vector<SinkRoute> routes;
    };

    Log log;
    std::map<std::string, int, std::less<>> systemInfo;
    Inject inject;
    Callbacks callbacks;
    Bluez bluez;
    Sound sound;

    /// What can't be used, a line each: "<file>:<line>: <what is wrong and what is allowed>".
    std::vector<std::string> complaints;
};

/// Reads the file and the environment variables that go before it. Any thread. Errors:
/// std::bad_alloc; everything else becomes a complaint, and the default is taken.
Settings readSettings();

/// The settings as they were at this library's first call; they live for ever. Any thread.
/// Each of the platform's libraries has its own copy; the log reports the complaints.
const Settings& settings();

}  // namespace corvane::host
