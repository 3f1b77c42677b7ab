// The table of all settings: each key has a text that describes the allowed values, and a
// function that stores a value.
#include "platform/host/settings/SettingsKeys.h"

#include <dlog.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "platform/host/settings/SettingsValues.h"

namespace corvane::host {

namespace {

// Stores a value or returns false. `rest` is the part of the key after the prefix.
using Store = bool (*)(Settings& settings, std::string_view rest, std::string_view value);

struct Key {
    std::string_view section;
    std::string_view name;  // a prefix if it ends with '*'
    const char* allowed;
    Store store;
};

constexpr std::array OUTPUTS{Named{"auto", LogOutput::automatic},
                             Named{"stderr", LogOutput::standardError},
                             Named{"journal", LogOutput::journal}, Named{"file", LogOutput::file}};

constexpr std::array LEVELS{
    Named{"debug", DLOG_PRIORITY_DEBUG},     Named{"info", DLOG_PRIORITY_INFO},
    Named{"warning", DLOG_PRIORITY_WARNING}, Named{"error", DLOG_PRIORITY_ERROR},
    Named{"3", DLOG_PRIORITY_DEBUG},         Named{"4", DLOG_PRIORITY_INFO},
    Named{"5", DLOG_PRIORITY_WARNING},       Named{"6", DLOG_PRIORITY_ERROR}};

constexpr std::array AGENTS{Named{"none", ""},
                            Named{"DisplayOnly", "DisplayOnly"},
                            Named{"DisplayYesNo", "DisplayYesNo"},
                            Named{"KeyboardOnly", "KeyboardOnly"},
                            Named{"NoInputNoOutput", "NoInputNoOutput"},
                            Named{"KeyboardDisplay", "KeyboardDisplay"}};

constexpr std::array ANSWERS{Named{"accept", true}, Named{"reject", false}};

constexpr std::array DECISIONS{Named{"yes", true}, Named{"no", false}};

constexpr std::array ROUTES{Named{"speaker", SOUND_TV_OUTPUT_ROUTE_SPEAKER},
                            Named{"bluetooth", SOUND_TV_OUTPUT_ROUTE_BLUETOOTH},
                            Named{"optical", SOUND_TV_OUTPUT_ROUTE_OPTICAL},
                            Named{"hdmi", SOUND_TV_OUTPUT_ROUTE_HDMI},
                            Named{"line-out", SOUND_TV_OUTPUT_ROUTE_LINE_OUT}};

constexpr Key KEYS[] = {
    {"log", "output", "auto, stderr, journal or file",
     [](Settings& s, auto, auto value) { return storeNamed(s.log.output, OUTPUTS, value); }},
    {"log", "file", "a path that starts with '/'",
     [](Settings& s, auto, auto value) { return storePath(s.log.file, value); }},
    {"log", "level", "debug, info, warning, error or 3 to 6",
     [](Settings& s, auto, auto value) { return storeNamed(s.log.level, LEVELS, value); }},
    {"system-info", "*", "a 32-bit integer",
     [](Settings& s, auto rest, auto value) {
         int number = 0;
         const bool good = storeNumber(number, INT32_MIN, INT32_MAX, value);
         if (good) {
             s.systemInfo[std::string(rest)] = number;
         }
         return good;
     }},
    {"inject", "socket", "a path of at most 107 characters, or empty",
     [](Settings& s, auto, auto value) {
         const bool good = value.size() <= 107;
         if (good) {
             s.inject.socket = value;
         }
         return good;
     }},
    {"inject", "threads", "a number from 0 to 8",
     [](Settings& s, auto, auto value) { return storeNumber(s.inject.threads, 0U, 8U, value); }},
    {"callbacks", "slow_ms", "a number of milliseconds from 0 to 3600000",
     [](Settings& s, auto, auto value) {
         return storeMilliseconds(s.callbacks.slow, 3600000, value);
     }},
    {"bluez", "agent",
     "none, DisplayOnly, DisplayYesNo, KeyboardOnly, NoInputNoOutput or KeyboardDisplay",
     [](Settings& s, auto, auto value) { return storeNamed(s.bluez.agent, AGENTS, value); }},
    {"bluez", "agent_answer", "accept or reject",
     [](Settings& s, auto, auto value) {
         return storeNamed(s.bluez.agentAccepts, ANSWERS, value);
     }},
    {"bluez", "agent_default", "yes or no",
     [](Settings& s, auto, auto value) {
         return storeNamed(s.bluez.agentIsDefault, DECISIONS, value);
     }},
    {"bluez", "profiles", "UUIDs like 00001101-0000-1000-8000-00805f9b34fb, separated by commas",
     [](Settings& s, auto, auto value) { return addUuids(s.bluez.profiles, value); }},
    {"bluez", "input_directory", "a path that starts with '/'",
     [](Settings& s, auto, auto value) { return storePath(s.bluez.inputDirectory, value); }},
    {"sound", "server", "the address of a sound server, or empty",
     [](Settings& s, auto, auto value) {
         s.sound.server = value;
         return true;
     }},
    {"sound", "route.*", "speaker, bluetooth, optical, hdmi or line-out",
     [](Settings& s, auto rest, auto value) {
         SinkRoute route{std::string(rest), SOUND_TV_OUTPUT_ROUTE_SPEAKER};
         const bool good = storeNamed(route.route, ROUTES, value);
         if (good) {
             s.sound.routes.push_back(std::move(route));
         }
         return good;
     }},
};

bool matches(std::string_view name, std::string_view key) {
    if (!name.ends_with('*')) {
        return name == key;
    }
    name.remove_suffix(1);
    return key.size() > name.size() && key.starts_with(name);
}

std::string listed(std::string_view section) {
    std::string result;
    for (const auto& key : KEYS) {
        if (key.section == section) {
            result.append(result.empty() ? "" : ", ").append(key.name);
        }
    }
    return result;
}

}  // namespace

bool isSection(std::string_view name) {
    return std::ranges::any_of(KEYS, [=](const Key& key) { return key.section == name; });
}

std::string allowedSections() {
    std::string result = "the sections are";
    std::string_view before;
    for (const auto& key : KEYS) {
        if (key.section != before) {
            result.append(before.empty() ? " [" : ", [").append(key.section).append("]");
            before = key.section;
        }
    }
    return result;
}

std::optional<std::string> storeSetting(Settings& settings, std::string_view section,
                                        std::string_view key, std::string_view value) {
    for (const auto& known : KEYS) {
        if (known.section != section || !matches(known.name, key)) {
            continue;
        }
        const auto prefix = known.name.ends_with('*') ? known.name.size() - 1 : 0;
        if (known.store(settings, key.substr(prefix), value)) {
            return std::nullopt;
        }
        return std::string(key) + " is \"" + std::string(value) + "\"; it must be " + known.allowed;
    }
    std::string complaint = "[";
    complaint.append(section).append("] has no key \"").append(key);
    return complaint.append("\"; its keys are ").append(listed(section));
}

}  // namespace corvane::host
