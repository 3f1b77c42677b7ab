// Finds files and directories that other users can change.
#include "tools/corvane/common/Exposure.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <iostream>
#include <system_error>

#include "tools/corvane/common/Printable.h"

namespace corvane::tool {

namespace fs = std::filesystem;

namespace {

std::string nameOfUser(uid_t id) {
    const passwd* const user = getpwuid(id);
    return user == nullptr ? "user " + std::to_string(id) : user->pw_name;
}

std::string nameOfGroup(gid_t id) {
    const group* const found = getgrgid(id);
    return found == nullptr ? std::to_string(id) : found->gr_name;
}

// True for the private group that many systems create for each user.
bool isOfOneUser(gid_t id, uid_t user) {
    const group* const found = getgrgid(id);
    if (found == nullptr) {
        return false;
    }
    const auto name = nameOfUser(user);
    for (char** member = found->gr_mem; *member != nullptr; ++member) {
        if (*member != name) {
            return false;
        }
    }
    bool isAlone = true;
    setpwent();
    for (const passwd* entry = getpwent(); entry != nullptr; entry = getpwent()) {
        isAlone = isAlone && (entry->pw_gid != id || entry->pw_uid == user);
    }
    endpwent();
    return isAlone;
}

}  // namespace

std::vector<std::string> exposureOf(const fs::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return {};
    }
    const auto name = printable(path.string());
    std::vector<std::string> sentences;
    if (status.st_uid != 0 && status.st_uid != geteuid()) {
        sentences.push_back(name + " belongs to " + nameOfUser(status.st_uid));
    }
    if ((status.st_mode & S_IWOTH) != 0) {
        sentences.push_back(name + " is writable by everyone");
    } else if ((status.st_mode & S_IWGRP) != 0 && !isOfOneUser(status.st_gid, status.st_uid)) {
        sentences.push_back(name + " is writable by the group " + nameOfGroup(status.st_gid));
    }
    return sentences;
}

std::vector<std::string> exposureOfFile(const fs::path& file) {
    auto sentences = exposureOf(file);
    std::error_code ignored;
    const auto directory = fs::absolute(file, ignored).parent_path();
    struct stat status {};
    if (stat(directory.c_str(), &status) == 0 && (status.st_mode & S_ISVTX) == 0) {
        const auto more = exposureOf(directory);
        sentences.insert(sentences.end(), more.begin(), more.end());
    }
    return sentences;
}

void warnOf(const std::vector<std::string>& exposure) {
    for (const auto& sentence : exposure) {
        std::cerr << "corvane: warning: " << sentence << '\n';
    }
}

}  // namespace corvane::tool
