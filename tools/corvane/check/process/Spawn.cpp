// Starts a program.
#include "tools/corvane/check/process/Spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "tools/corvane/check/findings/CheckError.h"

namespace corvane::check {

namespace {

class Actions {
public:
    Actions() {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
    }
    ~Actions() {
        posix_spawnattr_destroy(&m_attributes);
        posix_spawn_file_actions_destroy(&m_actions);
    }
    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;

    posix_spawn_file_actions_t* actions() { return &m_actions; }
    posix_spawnattr_t* attributes() { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& added) {
    std::vector<std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (!added.contains(text.substr(0, text.find('=')))) {
            all.push_back(text);
        }
    }
    for (const auto& [name, value] : added) {
        all.push_back(name + '=' + value);
    }
    return all;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

pid_t spawn(const SpawnOptions& options) {
    auto command = options.command;
    auto environment = environmentWith(options.environment);
    Actions spawning;
    auto* const actions = spawning.actions();
    posix_spawn_file_actions_addopen(actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(actions, STDOUT_FILENO, options.output.c_str(),
                                     O_WRONLY | O_CREAT | O_APPEND, 0600);
    posix_spawn_file_actions_adddup2(actions, STDOUT_FILENO, STDERR_FILENO);
    if (options.keptFd >= 0) {
        posix_spawn_file_actions_adddup2(actions, options.keptFd, 3);
    }
    posix_spawn_file_actions_addchdir_np(actions, options.directory.c_str());
    pid_t id = -1;
    const int error = posix_spawn(&id, command.front().c_str(), actions, spawning.attributes(),
                                  pointersTo(command).data(), pointersTo(environment).data());
    if (error != 0) {
        throw CheckError(command.front() + " can't be started: " + std::strerror(error));
    }
    return id;
}

std::string tailOf(const std::filesystem::path& file) {
    constexpr std::streamoff maxBytes = 16 << 20;
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    stream.seekg(std::max<std::streamoff>(stream.tellg() - maxBytes, 0));
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace corvane::check
