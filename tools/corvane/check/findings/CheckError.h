// The error of a check that can't be carried out.
#pragma once

#include <stdexcept>

namespace corvane::check {

/// The text names the cause and a remedy.
class CheckError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace corvane::check
