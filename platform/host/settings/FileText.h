// Reads a file as text, up to a limit.
#pragma once

#include <cstddef>
#include <string>

namespace corvane::host {

inline constexpr std::size_t MAX_FILE_BYTES = std::size_t{1024} * 1024;

struct FileText {
    int openError;  // 0, or the errno of a file that cannot be opened
    std::string text;
    bool isBroken;  // reading failed before the end
    bool isCut;     // the file is longer than MAX_FILE_BYTES; the text ends with a whole line
};

/// Errors: std::bad_alloc. Any thread.
FileText readFileText(const std::string& path);

}  // namespace corvane::host
