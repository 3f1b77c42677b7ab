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

/// The route of the sinks whose names match a pattern.
struct SinkRoute {
    std::string pattern;  // as of fnmatch(3)
    sound_tv_output_route_e route;
};

struct Settings {
    struct Log {
        LogOutput output = LogOutput::automatic;
        std::string file;
        int level = 0;  // the lowest priority that is written; 0: all
    };
    struct Inject {
        std::string socket;    // empty: no injection
        unsigned threads = 0;  // 0: events are delivered by the main loop
    };
    struct Callbacks {
        std::chrono::milliseconds slow{100};  // a slower callback is reported; 0: no report
    };
    struct Bluez {
        std::string agent;  // its capability, as BlueZ spells it; empty: no agent
        bool agentAccepts = false;
        bool agentIsDefault = false;
        std::vector<std::string> profiles;  // UUIDs
        std::string inputDirectory = "/dev/input";
    };
    struct Sound {
        std::string server;  // empty: the sound library's default
        std::vector<SinkRoute> routes;
    };

    Log log;
    std::map<std::string, int, std::less<>> systemInfo;
    Inject inject;
    Callbacks callbacks;
    Bluez bluez;
    Sound sound;

    /// One line for each error: "<file>:<line>: <what is wrong and what is allowed>".
    std::vector<std::string> complaints;
};

/// Reads the file and the environment variables that override it. Any thread. Errors:
/// std::bad_alloc; any other error becomes a complaint, and the setting keeps its default.
Settings readSettings();

/// Returns the settings as read at the first call; they are never destroyed. Any thread.
/// The log logs the complaints.
const Settings& settings();

}  // namespace corvane::host
