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
    std::map<std::string, std::string> environment;  // replaces or adds to the caller's
    std::filesystem::path output;                    // file for standard output and error
    int keptFd = -1;                                 // becomes descriptor 3; -1: none
};

/// Starts the program in a new process group, with no blocked signals and an empty standard input.
/// Throws CheckError.
pid_t spawn(const SpawnOptions& options);

/// Returns the last 16 MiB of a file; nothing if the file is missing.
std::string tailOf(const std::filesystem::path& file);

}  // namespace corvane::check
