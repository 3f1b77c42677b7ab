// Why a process is about to end: in which function an exception found no way out.
#pragma once

#include <string>

/// Loads what a backtrace needs; not for the first time when memory is short.
void prepareBacktraces();

/// For a terminate handler: the innermost destructor of the product on the stack as
/// "~Class", also where a class's own operator delete stands for it; else "main" if the
/// daemon's main is there; else all frames.
std::string innermostDestructor();
