// The beginning of a line of the log.
#pragma once

#include <array>
#include <cstddef>

namespace corvane::host {

using LineHead = std::array<char, 48>;

/// "12:34:56.789 4711 I ": local time, the calling thread, the priority's letter. Returns its
/// size; what stands behind it means nothing. Any thread; never throws.
std::size_t formatHead(LineHead& head, int priority) noexcept;

}  // namespace corvane::host
