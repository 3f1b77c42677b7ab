// What a library's file tells without being loaded.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace corvane::check {

struct ElfFile {
    bool hasInit = false;
    bool hasDeinit = false;
    bool isNodelete = false;
    int operationCount = 0;             // of the interface it was built for; 0 if it doesn't tell
    std::vector<std::string> exported;  // but the entry points, demangled
    std::vector<std::string> unique;    // exported ones of the kind that pins the library
};

/// Throws CheckError for a file that can't be read as a library.
ElfFile readElfFile(const std::filesystem::path& file);

}  // namespace corvane::check
