// A small file as text: of one that is large, or has no end, only the beginning.
#pragma once

#include <cstddef>
#include <string>

namespace corvane::host {

inline constexpr std::size_t mostFileBytes = 1024 * 1024;

struct FileText {
    int openError;  // 0, or the errno of a file that can't be opened; it has no text then
    std::string text;
    bool isBroken;  // couldn't be read to its end
    bool isCut;     // has more than mostFileBytes; the text ends with a whole line
};

/// Errors: std::bad_alloc. Any thread.
FileText readFileText(const std::string& path);

}  // namespace corvane::host
