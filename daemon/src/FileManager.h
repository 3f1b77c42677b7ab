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
        int error;  // errno if it is unreachable, otherwise 0
    };
    struct Listing {
        std::list<Entry> entries;  // in the directory's own order
        int error;                 // errno if the directory can't be read to its end, otherwise 0
    };

    /// Examines one name of a directory, whether it is listed or not.
    static Entry examine(const std::string& directory, const std::string& name);

    /// Returns std::nullopt with errno set if the directory can't be opened.
    static std::optional<Listing> listDirectory(const std::string& directory);

    /// Returns the names, without the directory, of the regular files (symbolic links are
    /// followed) that end in ".so", in the directory's own order. Logs an error and returns an
    /// empty list if the directory can't be opened. Main thread.
    std::list<std::string> getFilesInDirectory(const std::string& directory);
};
