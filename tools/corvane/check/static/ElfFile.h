// Reads a library's ELF file without loading it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace corvane::check {

struct ElfFile {
    bool hasInit = false;
    bool hasDeinit = false;
    bool isNodelete = false;
    int operationCount = 0;             // of the interface it was built for; 0 if unknown
    std::vector<std::string> exported;  // without the entry points, demangled
    std::vector<std::string> unique;    // exported with the binding "unique"
};

/// Throws CheckError if the file can't be read as ELF.
ElfFile readElfFile(const std::filesystem::path& file);

}  // namespace corvane::check
