#include "FileManager.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>

#include "log.h"

std::list<std::string> FileManager::getFilesInDirectory(const std::string& directory) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    struct Closer {
        void operator()(DIR* stream) const { closedir(stream); }
    };
    const std::unique_ptr<DIR, Closer> stream(opendir(directory.c_str()));
    if (!stream) {
        LOGE("can not open directory, %s", directory.c_str());
        return {};
    }
    std::list<std::string> files;
    while (const dirent* entry = readdir(stream.get())) {
        const std::string name = entry->d_name;
        struct stat status {};
        if (stat((directory + "/" + name).c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
            continue;
        }
        if (!name.ends_with(".so")) {
            continue;
        }
        LOGI("%s", name.c_str());
        files.push_back(name);
    }
    return files;
}
