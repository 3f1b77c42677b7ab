#include "daemon/src/FileManager.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>

#include "daemon/src/common/log.h"

namespace {

FileManager::Candidacy candidacyOf(const std::string& directory, const std::string& name) {
    using enum FileManager::Candidacy;
    struct stat status {};
    if (stat((directory + "/" + name).c_str(), &status) != 0) {
        return Unreachable;
    }
    if (!S_ISREG(status.st_mode)) {
        return NotARegularFile;
    }
    return name.ends_with(".so") ? Candidate : OtherSuffix;
}

}  // namespace

std::optional<std::list<FileManager::Entry>> FileManager::listDirectory(
    const std::string& directory) {
    struct Closer {
        void operator()(DIR* stream) const { closedir(stream); }
    };
    const std::unique_ptr<DIR, Closer> stream(opendir(directory.c_str()));
    if (!stream) {
        return std::nullopt;
    }
    std::list<Entry> entries;
    while (const dirent* entry = readdir(stream.get())) {
        entries.push_back({entry->d_name, candidacyOf(directory, entry->d_name)});
    }
    return entries;
}

std::list<std::string> FileManager::getFilesInDirectory(const std::string& directory) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    const auto entries = listDirectory(directory);
    if (!entries) {
        LOGE("can not open directory, %s", directory.c_str());
        return {};
    }
    std::list<std::string> files;
    for (const Entry& entry : *entries) {
        if (entry.candidacy == Candidacy::Candidate) {
            LOGI("%s", entry.name.c_str());
            files.push_back(entry.name);
        }
    }
    return files;
}
