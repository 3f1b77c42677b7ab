// Finds the candidate plugins of a directory.
#pragma once

#include <list>
#include <optional>
#include <string>

class FileManager {
public:
    enum class Candidacy { Candidate, Unreachable, NotARegularFile, OtherSuffix };

    struct Entry {
        std::string name;
        Candidacy candidacy;
    };

    /// All that the directory lists, in its own order. Empty, and errno is set, when it
    /// can't be opened.
    static std::optional<std::list<Entry>> listDirectory(const std::string& directory);

    /// The names, without the directory, of the regular files (also behind symbolic
    /// links) that end in ".so", in the directory's own order. Empty, with an error
    /// line, when the directory can't be read. Main thread.
    std::list<std::string> getFilesInDirectory(const std::string& directory);
};
