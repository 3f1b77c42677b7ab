// A descriptor as a place for whole lines, whatever it is connected to.
#pragma once

#include <cstddef>

namespace corvane::host {

/// Writes all of `lines`, which end in a newline, by one system call where the system takes them at
/// once; those of several threads are never mixed. Returns 0 or a negative error: what can't be
/// written is dropped, and the next line starts on a line of its own. A closed pipe raises no
/// signal. A full pipe is waited for unless it was made non-blocking. All calls of a process name
/// the same descriptor. Any thread; never throws.
int writeLogLines(int fd, const char* lines, std::size_t size) noexcept;

}  // namespace corvane::host
