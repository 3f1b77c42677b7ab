// printf for the log: the conversions that log lines are made of take a short way.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace corvane::host {

/// What vsnprintf does and returns. Any thread; keeps no state.
int formatText(char* buffer, std::size_t size, const char* format, va_list arguments) noexcept;

}  // namespace corvane::host
