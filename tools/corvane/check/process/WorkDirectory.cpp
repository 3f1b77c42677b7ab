// The directory in which a plugin is checked.
#include "tools/corvane/check/process/WorkDirectory.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>

#include "tools/corvane/check/findings/CheckError.h"

namespace corvane::check {

namespace fs = std::filesystem;

namespace {

// These two stand in for std::filesystem, which on some 32-bit systems can't examine a file that is
// dated after 2038.

bool isRegularFile(const fs::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        throw CheckError(path.string() + " can't be checked: " + std::strerror(errno));
    }
    return S_ISREG(status.st_mode);
}

struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using Stream = std::unique_ptr<std::FILE, Closer>;

// Returns 0, or errno.
int copyFile(const fs::path& from, const fs::path& to) {
    const Stream input(std::fopen(from.c_str(), "rbe"));
    const Stream output(input ? std::fopen(to.c_str(), "wbe") : nullptr);
    if (!output) {
        return errno;
    }
    std::array<char, 65536> block;
    while (const auto size = std::fread(block.data(), 1, block.size(), input.get())) {
        if (std::fwrite(block.data(), 1, size, output.get()) != size) {
            return errno;
        }
    }
    return std::ferror(input.get()) != 0 || std::fflush(output.get()) != 0 ? errno : 0;
}

}  // namespace

WorkDirectory::WorkDirectory(const fs::path& library) : m_name(library.filename()) {
    if (!isRegularFile(library)) {
        throw CheckError(library.string() + " can't be checked: it is not a regular file");
    }
    auto path = (fs::temp_directory_path() / "corvane-check-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) {
        throw CheckError("the directory " + path + " can't be created: " + std::strerror(errno));
    }
    m_directory = path;
    fs::create_directory(plugins());
    if (const int error = copyFile(library, copy())) {
        fs::remove_all(m_directory);
        throw CheckError(library.string() + " can't be copied: " + std::strerror(error));
    }
    std::ofstream(m_directory / "platform.conf")
        << "[log]\noutput = stderr\nlevel = info\n"
        << "[callbacks]\nslow_ms = 0\n"
        << "[sound]\nserver = unix:" << (m_directory / "no-sound").string() << '\n';
}

WorkDirectory::~WorkDirectory() {
    std::error_code ignored;
    fs::remove_all(m_directory, ignored);
}

std::map<std::string, std::string> WorkDirectory::environment() const {
    const auto nowhere = "unix:path=" + (m_directory / "no-bus").string();
    return {{"DBUS_SYSTEM_BUS_ADDRESS", nowhere},
            {"DBUS_SESSION_BUS_ADDRESS", nowhere},
            {"PULSE_SERVER", "unix:" + (m_directory / "no-sound").string()},
            {"XDG_RUNTIME_DIR", m_directory},
            {"HOME", m_directory},
            {"ECORE_NO_SYSTEM_MODULES", "1"},
            {"CORVANE_PLATFORM_CONF", m_directory / "platform.conf"},
            {"CORVANE_LOG_LEVEL", ""},
            {"CORVANE_INJECT_SOCKET", ""}};
}

}  // namespace corvane::check
