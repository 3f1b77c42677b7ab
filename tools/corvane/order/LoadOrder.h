// Computes which plugins the daemon would load from a directory, and in which order. Loads
// nothing.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "daemon/src/FileManager.h"
#include "daemon/src/PluginPriorityChecker.h"

namespace corvane::tool {

struct OrderedFile {
    std::string name;
    std::size_t found;  // position among the candidates as the directory lists them, from 1
    PluginPriorityChecker::Decision decision;
    std::string problem;  // why the file can't be opened or read; empty if it can

    int getPriority() const { return decision.priority; }
};

struct LoadOrder {
    std::string directory;
    std::vector<OrderedFile> files;           // in load order
    std::vector<FileManager::Entry> skipped;  // not candidates; sorted by name
    std::vector<std::string> exposed;         // sentences from exposureOf()
};

/// Queries the file system and the platform as the daemon does when it starts. Throws
/// std::runtime_error if the directory can't be read to its end.
LoadOrder readLoadOrder(const std::string& directory);

}  // namespace corvane::tool
