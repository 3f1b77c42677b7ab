// Finds the function whose exception terminates the process.
#pragma once

#include <string>

/// Loads the library for backtraces. Call it while no allocation fails.
void prepareBacktraces();

/// Call it in a terminate handler. Returns the innermost destructor of the product on the stack as
/// "~Class"; the operator delete of a class counts as its destructor. Without a destructor, returns
/// "main" if the daemon's main or its caller is on the stack, otherwise the names of all frames.
std::string innermostDestructor();
