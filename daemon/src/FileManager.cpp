#include "FileManager.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>

#include "log.h"

namespace {

FileManager::Candidacy candidacyOf(const std::string& path) {
    using enum FileManager::Candidacy;
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return Unreachable;
    }
    if (!S_ISREG(status.st_mode)) {
        return NotARegularFile;
    }
    return path.ends_with(".so") ? Candidate : OtherSuffix;
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
    std::string path = directory + "/";
    const std::size_t prefix = path.size();
    while (const dirent* entry = readdir(stream.get())) {
        path.replace(prefix, std::string::npos, entry->d_name);
        entries.push_back({entry->d_name, candidacyOf(path)});
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
