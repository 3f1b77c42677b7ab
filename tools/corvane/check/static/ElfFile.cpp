// Reads a library's ELF file without loading it.
#include "tools/corvane/check/static/ElfFile.h"

#include <fcntl.h>
#include <gelf.h>
#include <libelf.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

#include "tools/corvane/check/findings/CheckError.h"
#include "tools/corvane/check/process/Frames.h"

namespace corvane::check {

namespace {

struct ElfEnd {
    void operator()(Elf* elf) const { elf_end(elf); }
};

// Owns the descriptor from which libelf reads.
class File {
public:
    explicit File(const std::filesystem::path& path)
        : m_fd(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (m_fd < 0) {
            throw CheckError(path.string() + " can't be opened: " + std::strerror(errno));
        }
    }
    ~File() { close(m_fd); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    int fd() const { return m_fd; }

private:
    int m_fd;
};

// Symbols that linkers add to every library.
bool isOfTheLinker(std::string_view name) {
    constexpr std::array<std::string_view, 5> names{"_init", "_fini", "_edata", "_end",
                                                    "__bss_start"};
    return std::ranges::find(names, name) != names.end();
}

void addSymbol(ElfFile& library, const GElf_Sym& symbol, const char* name) {
    const auto binding = GELF_ST_BIND(symbol.st_info);
    const auto visibility = GELF_ST_VISIBILITY(symbol.st_other);
    if (symbol.st_shndx == SHN_UNDEF || symbol.st_shndx == SHN_ABS || binding == STB_LOCAL ||
        visibility == STV_HIDDEN || visibility == STV_INTERNAL || isOfTheLinker(name)) {
        return;
    }
    if (binding == STB_GNU_UNIQUE) {
        library.unique.push_back(demangled(name));
    } else if (name == std::string_view("PLUGIN_INIT")) {
        library.hasInit = true;
    } else if (name == std::string_view("PLUGIN_DEINIT")) {
        library.hasDeinit = true;
    } else {
        library.exported.push_back(demangled(name));
    }
}

// Calls `read` for each entry of a section, until `get` finds none.
template <typename Entry, typename Read>
void forEachEntry(Elf_Scn* section, const GElf_Shdr& header, Entry* (*get)(Elf_Data*, int, Entry*),
                  Read read) {
    auto* const data = elf_getdata(section, nullptr);
    const auto count = header.sh_entsize == 0 ? 0 : header.sh_size / header.sh_entsize;
    Entry entry;
    for (std::size_t i = 0;
         data != nullptr && i < count && get(data, static_cast<int>(i), &entry) != nullptr; ++i) {
        read(entry);
    }
}

void readSymbols(ElfFile& library, Elf* elf, Elf_Scn* section, const GElf_Shdr& header) {
    forEachEntry(section, header, &gelf_getsym, [&](const GElf_Sym& symbol) {
        if (const char* const name = elf_strptr(elf, header.sh_link, symbol.st_name)) {
            addSymbol(library, symbol, name);
        }
    });
}

void readDynamic(ElfFile& library, Elf_Scn* section, const GElf_Shdr& header) {
    forEachEntry(section, header, &gelf_getdyn, [&](const GElf_Dyn& entry) {
        if (entry.d_tag == DT_FLAGS_1 && (entry.d_un.d_val & DF_1_NODELETE) != 0) {
            library.isNodelete = true;
        }
    });
}

// The section holds one number for each source file that includes the interface.
void readOperationCount(ElfFile& library, Elf_Scn* section) {
    auto* const data = elf_getdata(section, nullptr);
    for (std::size_t i = 0; data != nullptr && i + sizeof(int) <= data->d_size; i += sizeof(int)) {
        int count = 0;
        std::memcpy(&count, static_cast<const char*>(data->d_buf) + i, sizeof count);
        library.operationCount = std::max(library.operationCount, count);
    }
}

std::string_view nameOf(Elf* elf, const GElf_Shdr& section) {
    std::size_t names = 0;
    const char* const name =
        elf_getshdrstrndx(elf, &names) == 0 ? elf_strptr(elf, names, section.sh_name) : nullptr;
    return name == nullptr ? "" : name;
}

}  // namespace

ElfFile readElfFile(const std::filesystem::path& path) {
    elf_version(EV_CURRENT);
    const File file(path);
    const std::unique_ptr<Elf, ElfEnd> elf(elf_begin(file.fd(), ELF_C_READ, nullptr));
    if (elf == nullptr || elf_kind(elf.get()) != ELF_K_ELF) {
        throw CheckError(path.filename().string() + " is not an ELF file");
    }
    ElfFile library;
    for (Elf_Scn* section = nullptr; (section = elf_nextscn(elf.get(), section)) != nullptr;) {
        GElf_Shdr header;
        if (gelf_getshdr(section, &header) == nullptr) {
            throw CheckError(path.filename().string() + ": " + elf_errmsg(-1));
        }
        if (header.sh_type == SHT_DYNSYM) {
            readSymbols(library, elf.get(), section, header);
        } else if (header.sh_type == SHT_DYNAMIC) {
            readDynamic(library, section, header);
        } else if (nameOf(elf.get(), header) == ".corvane.abi") {
            readOperationCount(library, section);
        }
    }
    std::ranges::sort(library.exported);
    std::ranges::sort(library.unique);
    return library;
}

}  // namespace corvane::check
