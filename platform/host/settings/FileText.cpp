// Reads the beginning of a file.
#include "FileText.h"

#include <cerrno>
#include <fstream>

namespace corvane::host {

FileText readFileText(const std::string& path) {
    std::ifstream file(path);
    if (!file.is_open()) {
        return {errno, "", false, false};
    }
    FileText result{};
    for (char piece[4096]; file && !result.isCut;) {
        file.read(piece, sizeof piece);
        result.text.append(piece, static_cast<std::size_t>(file.gcount()));
        result.isCut = result.text.size() > mostFileBytes;
    }
    result.isBroken = file.bad();
    if (result.isCut) {
        result.text.resize(result.text.rfind('\n', mostFileBytes - 1) + 1);
    }
    return result;
}

}  // namespace corvane::host
