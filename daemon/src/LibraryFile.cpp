#include "daemon/src/LibraryFile.h"

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

class File {
public:
    explicit File(const std::string& path) : m_fd(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~File() {
        if (m_fd >= 0) {
            close(m_fd);
        }
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Returns std::nullopt if the size can't be determined.
    std::optional<std::uint64_t> size() const {
        struct stat status {};
        if (fstat(m_fd, &status) != 0) {
            return std::nullopt;
        }
        return static_cast<std::uint64_t>(status.st_size);
    }
    bool read(void* to, std::size_t size, std::size_t offset) const {
        return pread(m_fd, to, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
    }

private:
    int m_fd;
};

constexpr unsigned char OWN_CLASS = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;

bool isLibrary(const Header& header) {
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
           header.e_ident[EI_CLASS] == OWN_CLASS && header.e_type == ET_DYN &&
           header.e_phentsize == sizeof(Segment);
}

}  // namespace

bool LibraryFile::isCutOff(const std::string& path) {
    const File file(path);
    Header header{};
    if (!file.read(&header, sizeof header, 0) || !isLibrary(header)) {
        return false;
    }
    std::vector<Segment> segments(header.e_phnum);
    if (!file.read(segments.data(), segments.size() * sizeof(Segment), header.e_phoff)) {
        return false;
    }
    const auto size = file.size();
    if (!size) {
        return false;
    }
    // The rest of the file's last page reads as zeros.
    const auto page = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    const std::uint64_t readable = (*size + page - 1) / page * page;
    return std::ranges::any_of(segments, [=](const Segment& segment) {
        return segment.p_type == PT_LOAD && segment.p_filesz > 0 &&
               (segment.p_filesz > readable || segment.p_offset > readable - segment.p_filesz);
    });
}
