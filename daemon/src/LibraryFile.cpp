#include "LibraryFile.h"

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
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

    std::size_t size() const {
        struct stat status {};
        fstat(m_fd, &status);
        return static_cast<std::size_t>(status.st_size);
    }
    /// How much was there.
    std::size_t read(void* to, std::size_t size, std::size_t offset) const {
        const ssize_t result = pread(m_fd, to, size, static_cast<off_t>(offset));
        return result < 0 ? 0 : static_cast<std::size_t>(result);
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
    // As linkers lay it out, so that one call reads all.
    struct {
        Header header;
        std::array<Segment, 16> segments;
    } start;
    const File file(path);
    const std::size_t read = file.read(&start, sizeof start, 0);
    if (read < sizeof(Header) || !isLibrary(start.header)) {
        return false;
    }
    const std::size_t count = start.header.e_phnum;
    const Segment* segments = start.segments.data();
    std::vector<Segment> elsewhere;
    if (start.header.e_phoff != sizeof(Header) || sizeof(Header) + count * sizeof(Segment) > read) {
        elsewhere.resize(count);
        const std::size_t size = count * sizeof(Segment);
        if (file.read(elsewhere.data(), size, start.header.e_phoff) < size) {
            return true;
        }
        segments = elsewhere.data();
    }
    return std::any_of(segments, segments + count, [end = file.size()](const Segment& segment) {
        return segment.p_type == PT_LOAD &&
               (segment.p_filesz > end || segment.p_offset > end - segment.p_filesz);
    });
}
