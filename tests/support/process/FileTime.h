// Sets the time of a file's last change, also after 2038.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

constexpr time_t YEAR_2040 = 2208988800;

/// `time` is in seconds since 1970. Throws std::system_error.
inline void setTime(const std::filesystem::path& file, time_t time) {
    timespec both[2]{};
    both[0].tv_sec = both[1].tv_sec = time;
    if (utimensat(AT_FDCWD, file.c_str(), both, 0) != 0) {
        throw std::system_error(errno, std::generic_category(), file.string());
    }
}
