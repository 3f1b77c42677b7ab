// What the daemon would load from a directory, and in which order, without loading it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "daemon/src/FileManager.h"
#include "daemon/src/PluginPriorityChecker.h"

namespace corvane::tool {

struct OrderedFile {
    std::string name;
    std::size_t found;  // its place in the directory's own order, candidates only, from 1
    PluginPriorityChecker::Decision decision;

    int getPriority() const { return decision.priority; }
};

struct LoadOrder {
    std::string directory;
    std::vector<OrderedFile> files;           // the first is loaded first
    std::vector<FileManager::Entry> skipped;  // what isn't a candidate, by name
    std::vector<std::string> exposed;         // what others may change, in sentences
};

/// Asks the file system and the platform what the daemon would ask them now. Throws
/// std::runtime_error for a directory that can't be read.
LoadOrder readLoadOrder(const std::string& directory);

}  // namespace corvane::tool
