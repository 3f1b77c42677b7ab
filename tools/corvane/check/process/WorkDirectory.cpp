// The directory in which a plugin is checked.
#include "tools/corvane/check/process/WorkDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "tools/corvane/check/findings/CheckError.h"

namespace corvane::check {

namespace fs = std::filesystem;

WorkDirectory::WorkDirectory(const fs::path& library) : m_name(library.filename()) {
    std::error_code error;
    if (!fs::is_regular_file(library, error)) {
        throw CheckError(library.string() + " can't be checked: " +
                         (error ? error.message() : "it is not a regular file"));
    }
    auto path = (fs::temp_directory_path() / "corvane-check-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) {
        throw CheckError("the directory " + path + " can't be created: " + std::strerror(errno));
    }
    m_directory = path;
    fs::create_directory(plugins());
    if (!fs::copy_file(library, copy(), error)) {
        fs::remove_all(m_directory);
        throw CheckError(library.string() + " can't be read: " + error.message());
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
