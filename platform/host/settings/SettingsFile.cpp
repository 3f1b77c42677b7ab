// Reads a settings file with inih. inih reports only the first bad line, so SettingsReader
// passes it one line at a time and notes whether inih could use the line.
#include "platform/host/settings/SettingsFile.h"

#include <ini.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <sstream>
#include <string_view>
#include <system_error>

#include "platform/host/settings/FileText.h"
#include "platform/host/settings/SettingsKeys.h"

namespace corvane::host {

namespace {

class SettingsReader {
public:
    SettingsReader(Settings& settings, const std::string& path, const std::string& text)
        : m_settings(settings), m_path(path), m_file(text) {}

    void read() {
        ini_parse_stream(
            [](char* buffer, int size, void* self) {
                return static_cast<SettingsReader*>(self)->nextLine(buffer,
                                                                    static_cast<std::size_t>(size));
            },
            this,
            [](void* self, const char* section, const char* key, const char* value) {
                static_cast<SettingsReader*>(self)->take(section, key, value);
                return 1;
            },
            this);
    }

private:
    char* nextLine(char* buffer, std::size_t size) {
        if (m_pending) {
            complain("this is neither \"[section]\" nor \"key = value\" nor a comment");
        }
        m_pending = false;
        std::string line;
        if (!std::getline(m_file, line)) {
            return nullptr;
        }
        ++m_number;
        if (m_number == 1 && line.starts_with("\xef\xbb\xbf")) {
            line.erase(0, 3);
        }
        // inih treats an indented line as a continuation of the value above it.
        line.erase(0, line.find_first_not_of(" \t\r"));
        // The buffer also holds a newline and a null byte.
        if (line.size() > size - 2) {
            complain("the line has more than " + std::to_string(size - 2) + " characters");
            line.clear();
        }
        m_pending = !line.empty() && line[0] != '#' && line[0] != ';' &&
                    !(line[0] == '[' && line.find(']') != std::string::npos);
        line += '\n';
        std::memcpy(buffer, line.c_str(), line.size() + 1);
        return buffer;
    }

    void take(std::string_view section, std::string_view key, std::string_view value) {
        m_pending = false;
        if (!isSection(section)) {
            if (m_unknownSection != section) {
                m_unknownSection = section;
                complain(section.empty()
                             ? "there is no section above this line; " + allowedSections()
                             : "there is no section [" + std::string(section) + "]; " +
                                   allowedSections());
            }
        } else if (const auto error = storeSetting(m_settings, section, key, value)) {
            complain(*error);
        }
    }

    void complain(const std::string& text) {
        m_settings.complaints.push_back(m_path + ':' + std::to_string(m_number) + ": " + text);
    }

    Settings& m_settings;
    const std::string& m_path;
    std::istringstream m_file;
    std::size_t m_number = 0;
    bool m_pending = false;  // inih has to use the current line, but has not done so yet
    std::optional<std::string> m_unknownSection;
};

}  // namespace

void readSettingsFile(Settings& settings, const std::string& path, AbsentFile absent) {
    const auto file = readFileText(path);
    auto& complaints = settings.complaints;
    if (file.openError != 0) {
        if (absent == AbsentFile::reported || file.openError != ENOENT) {
            complaints.push_back(path + ": " + std::generic_category().message(file.openError) +
                                 "; every setting has its default");
        }
        return;
    }
    SettingsReader(settings, path, file.text).read();
    if (file.isBroken) {
        complaints.push_back(path + ": cannot be read to its end");
    }
    if (file.isCut) {
        complaints.push_back(path + ": has more than " + std::to_string(MAX_FILE_BYTES) +
                             " bytes; the rest is ignored");
    }
}

}  // namespace corvane::host
