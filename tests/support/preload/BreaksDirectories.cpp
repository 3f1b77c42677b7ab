// Preloaded into the command: no directory can be read, as on a damaged file system.
#include <dirent.h>

#include <cerrno>

extern "C" dirent* readdir(DIR*) {
    errno = EIO;
    return nullptr;
}
