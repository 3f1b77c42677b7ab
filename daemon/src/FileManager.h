// Finds the candidate plugins of a directory.
#pragma once

#include <list>
#include <optional>
#include <string>

/// Stateless. Errors: the exhaustion of memory.
class FileManager {
public:
    enum class Candidacy { Candidate, Unreachable, NotARegularFile, OtherSuffix };

    struct Entry {
        std::string name;
        Candidacy candidacy;
    };

    /// Returns all entries in the directory's own order, or std::nullopt with errno set if it
    /// can't be opened.
    static std::optional<std::list<Entry>> listDirectory(const std::string& directory);

    /// Returns the names, without the directory, of the regular files (symbolic links are
    /// followed) that end in ".so", in the directory's own order. Logs an error and returns an
    /// empty list if the directory can't be read. Main thread.
    std::list<std::string> getFilesInDirectory(const std::string& directory);
};
