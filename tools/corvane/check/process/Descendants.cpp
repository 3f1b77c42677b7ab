// Ends all descendant processes of a check.
#include "tools/corvane/check/process/Descendants.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <chrono>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tools/corvane/check/findings/CheckError.h"

namespace corvane::check {

namespace fs = std::filesystem;

namespace {

// Limits the race against a plugin that starts processes faster than they are killed.
constexpr std::chrono::seconds END_LIMIT(5);

// From "pid (name) state parent ..."; the name may contain anything.
pid_t parentIn(const std::string& status) {
    const auto end = status.rfind(')');
    std::istringstream fields(end == std::string::npos ? "" : status.substr(end + 1));
    char state = 0;
    pid_t parent = 0;
    fields >> state >> parent;
    return parent;
}

std::set<pid_t> children() {
    std::set<pid_t> ids;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const auto name = entry.path().filename().string();
        if (std::isdigit(static_cast<unsigned char>(name.front())) == 0) {
            continue;
        }
        std::ostringstream status;
        status << std::ifstream(entry.path() / "stat").rdbuf();  // empty if it has ended
        if (parentIn(status.str()) == getpid()) {
            ids.insert(std::stoi(name));
        }
    }
    return ids;
}

}  // namespace

Descendants::Descendants() : m_before(children()) {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

Descendants::~Descendants() {
    try {
        end();
    } catch (const std::exception&) {
        // Another exception is being handled, or end() reported the error before.
    }
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}

void Descendants::end() {
    const auto deadline = std::chrono::steady_clock::now() + END_LIMIT;
    while (true) {
        auto left = children();
        for (const auto id : m_before) {
            left.erase(id);
        }
        if (left.empty()) {
            return;
        }
        for (const auto id : left) {
            // Once a process is reaped, its children are children of this process.
            if (kill(id, SIGKILL) != 0 || waitpid(id, nullptr, 0) != id ||
                std::chrono::steady_clock::now() > deadline) {
                throw CheckError("the check failed: process " + std::to_string(id) +
                                 ", which the plugin started, can't be killed");
            }
        }
    }
}

}  // namespace corvane::check
