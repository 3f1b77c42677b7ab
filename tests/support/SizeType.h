// The name of std::size_t's own type in the signatures that g++ traces.
#pragma once

#include <cstddef>
#include <type_traits>

constexpr const char* SIZE_TYPE =
    std::is_same_v<std::size_t, unsigned long> ? "long unsigned int" : "unsigned int";
