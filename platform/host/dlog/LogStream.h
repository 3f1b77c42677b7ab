// The standard error as a place for whole lines, whatever it is connected to.
#pragma once

#include <cstddef>

namespace corvane::host {

/// Writes all of `text`, by one system call where the system takes it at once; the lines of
/// several threads are never mixed. Returns 0 or a negative error: the rest of a text that
/// can't be written is dropped. A closed pipe raises no signal. A full pipe is waited for
/// unless it was made non-blocking. Any thread; never throws.
int writeStandardError(const char* text, std::size_t size) noexcept;

}  // namespace corvane::host
