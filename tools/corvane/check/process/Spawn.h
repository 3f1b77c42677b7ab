// Starts a program.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace corvane::check {

struct SpawnOptions {
    std::vector<std::string> command;  // the first is a path
    std::filesystem::path directory;
    std::map<std::string, std::string> environment;  // added to the caller's
    std::filesystem::path output;                    // gets both streams
    int keptFd = -1;                                 // is descriptor 3 there
};

/// In a process group of its own, with no signal blocked and nothing to read. Throws CheckError.
pid_t spawn(const SpawnOptions& options);

/// What is in a file, of a large one the last 16 MiB; empty if there is none.
std::string tailOf(const std::filesystem::path& file);

}  // namespace corvane::check
