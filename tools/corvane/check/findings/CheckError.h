// Why a check can't be made at all.
#pragma once

#include <stdexcept>

namespace corvane::check {

/// The text says what is wrong and what to do about it.
class CheckError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace corvane::check
