// Fuzzes the content of a settings file. All settings that are read must be valid, every complaint
// must name the file and the line, and the settings must be the same after writing and reading them
// again.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/host/settings/SettingsFile.h"
#include "tests/fuzz/Input.h"

namespace {

using namespace corvane::host;

/// A file in memory that has a path.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view text) : m_fd(memfd_create("settings", MFD_CLOEXEC)) {
        REQUIRE(m_fd >= 0);
        REQUIRE(write(m_fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()));
    }
    ~MemoryFile() { close(m_fd); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_fd); }

private:
    int m_fd;
};

Settings read(std::string_view text) {
    const MemoryFile file(text);
    Settings settings;
    readSettingsFile(settings, file.path(), AbsentFile::reported);
    const auto lines = 1 + std::count(text.begin(), text.end(), '\n');
    long before = 1;
    for (const auto& complaint : settings.complaints) {
        REQUIRE(complaint.starts_with(file.path() + ':'));
        const char* const start = complaint.c_str() + file.path().size() + 1;
        char* end = nullptr;
        const long line = std::strtol(start, &end, 10);
        REQUIRE(std::string_view(end).starts_with(": ") && std::string_view(end).size() > 2);
        REQUIRE(line >= before && line <= lines);
        before = line;
    }
    return settings;
}

bool isUuid(const std::string& text) {
    constexpr std::size_t dashes[] = {8, 13, 18, 23};
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool dash = std::find(std::begin(dashes), std::end(dashes), i) != std::end(dashes);
        const bool digit = std::isxdigit(static_cast<unsigned char>(text[i])) != 0 &&
                           std::isupper(static_cast<unsigned char>(text[i])) == 0;
        if (dash ? text[i] != '-' : !digit) {
            return false;
        }
    }
    return text.size() == 36;
}

void requireUsable(const Settings& settings) {
    REQUIRE(settings.log.file.empty() || settings.log.file[0] == '/');
    REQUIRE(settings.log.level == 0 || (settings.log.level >= 3 && settings.log.level <= 6));
    REQUIRE(settings.inject.socket.size() <= 107);
    REQUIRE(settings.inject.threads <= 8);
    REQUIRE(settings.callbacks.slow.count() >= 0 && settings.callbacks.slow.count() <= 3600000);
    REQUIRE(settings.bluez.inputDirectory[0] == '/');
    REQUIRE(std::ranges::all_of(settings.bluez.profiles, isUuid));
}

std::string write(const Settings& settings) {
    constexpr const char* outputs[] = {"auto", "stderr", "journal", "file"};
    constexpr const char* levels[] = {"debug", "info", "warning", "error"};
    constexpr const char* routes[] = {"speaker", "bluetooth", "optical", "hdmi", "line-out"};
    std::string text = "[log]\noutput=";
    text += outputs[static_cast<int>(settings.log.output)];
    text += settings.log.file.empty() ? "" : "\nfile=" + settings.log.file;
    text += settings.log.level == 0 ? "" : std::string("\nlevel=") + levels[settings.log.level - 3];
    text += "\n[system-info]\n";
    for (const auto& [key, value] : settings.systemInfo) {
        text += key + '=' + std::to_string(value) + '\n';
    }
    text += "[inject]\nsocket=" + settings.inject.socket;
    text += "\nthreads=" + std::to_string(settings.inject.threads);
    text += "\n[callbacks]\nslow_ms=" + std::to_string(settings.callbacks.slow.count());
    text += "\n[bluez]\nagent=" + (settings.bluez.agent.empty() ? "none" : settings.bluez.agent);
    text += settings.bluez.agentAccepts ? "\nagent_answer=accept" : "\nagent_answer=reject";
    text += settings.bluez.agentIsDefault ? "\nagent_default=yes" : "\nagent_default=no";
    for (const auto& uuid : settings.bluez.profiles) {
        text += "\nprofiles=" + uuid;
    }
    text += "\ninput_directory=" + settings.bluez.inputDirectory;
    text += "\n[sound]\nserver=" + settings.sound.server + '\n';
    for (const auto& row : settings.sound.routes) {
        text += "route." + row.pattern + '=' + routes[row.route] + '\n';
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto settings = read({reinterpret_cast<const char*>(data), size});
    requireUsable(settings);
    const auto text = write(settings);
    const auto again = read(text);
    if (!again.complaints.empty()) {
        std::fprintf(stderr, "%s\n%s\n", again.complaints[0].c_str(), text.c_str());
    }
    REQUIRE(again.complaints.empty());
    REQUIRE(write(again) == text);
    return 0;
}
