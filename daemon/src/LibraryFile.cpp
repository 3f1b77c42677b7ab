#include "LibraryFile.h"

#include <elf.h>
#include <link.h>

#include <cstddef>
#include <cstring>
#include <fstream>
#include <vector>

namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

constexpr unsigned char OWN_CLASS = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;

bool isLibrary(const Header& header) {
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
           header.e_ident[EI_CLASS] == OWN_CLASS && header.e_type == ET_DYN &&
           header.e_phentsize == sizeof(Segment);
}

}  // namespace

bool LibraryFile::isCutOff(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const auto size = static_cast<std::size_t>(file.tellg());
    Header header{};
    file.seekg(0);
    if (!file.read(reinterpret_cast<char*>(&header), sizeof header) || !isLibrary(header)) {
        return false;
    }
    std::vector<Segment> segments(header.e_phnum);
    const auto bytes = static_cast<std::streamsize>(segments.size() * sizeof(Segment));
    file.seekg(static_cast<std::streamoff>(header.e_phoff));
    if (!file.read(reinterpret_cast<char*>(segments.data()), bytes)) {
        return true;
    }
    for (const Segment& segment : segments) {
        if (segment.p_type == PT_LOAD &&
            (segment.p_filesz > size || segment.p_offset > size - segment.p_filesz)) {
            return true;
        }
    }
    return false;
}
