#include "daemon/src/FileManager.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>

#include "daemon/src/common/log.h"

FileManager::Entry FileManager::examine(const std::string& directory, const std::string& name) {
    using enum Candidacy;
    struct stat status {};
    if (stat((directory + "/" + name).c_str(), &status) != 0) {
        return {name, Unreachable, errno};
    }
    if (!S_ISREG(status.st_mode)) {
        return {name, NotARegularFile, 0};
    }
    return {name, name.ends_with(".so") ? Candidate : OtherSuffix, 0};
}

std::optional<FileManager::Listing> FileManager::listDirectory(const std::string& directory) {
    struct Closer {
        void operator()(DIR* stream) const { closedir(stream); }
    };
    const std::unique_ptr<DIR, Closer> stream(opendir(directory.c_str()));
    if (!stream) {
        return std::nullopt;
    }
    Listing listing{};
    while (true) {
        errno = 0;  // readdir sets it only if it fails
        const dirent* const entry = readdir(stream.get());
        if (entry == nullptr) {
            listing.error = errno;
            return listing;
        }
        listing.entries.push_back(examine(directory, entry->d_name));
    }
}

std::list<std::string> FileManager::getFilesInDirectory(const std::string& directory) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    const auto listing = listDirectory(directory);
    if (!listing) {
        LOGE("can not open directory, %s", directory.c_str());
        return {};
    }
    std::list<std::string> files;
    for (const Entry& entry : listing->entries) {
        if (entry.candidacy == Candidacy::Candidate) {
            LOGI("%s", entry.name.c_str());
            files.push_back(entry.name);
        }
    }
    return files;
}
