// Replaces libFuzzer in builds without it: runs a fuzz target on all files of the given
// directories.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "tests/fuzz/Input.h"

namespace {

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main(int count, char** directories) {
    int files = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(directories[i])) {
            const auto content = contentOf(entry.path());
            std::cout << entry.path().filename().string() << std::endl;
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()),
                                   content.size());
            ++files;
        }
    }
    std::cout << files << " inputs\n";
    return files > 0 ? 0 : 1;
}
