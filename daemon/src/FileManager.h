// Finds the candidate plugins of a directory.
#pragma once

#include <list>
#include <string>

class FileManager {
public:
    /// The names, without the directory, of the regular files (also behind symbolic
    /// links) that end in ".so", in the directory's own order. Empty, with an error
    /// line, when the directory can't be read. Main thread.
    std::list<std::string> getFilesInDirectory(const std::string& directory);
};
