// The program's own operator new and delete, strndup and free: they count what is
// outstanding, and fail where a test says so. The linker passes the two C functions of
// everything linked in here through this file (--wrap).
#pragma once

#include <cstddef>
#include <functional>

/// Threads: counting from any; the rest from one, while no other allocates.
namespace allocations {

enum class Failing { Once, FromThenOn };

/// Lets the `number`-th allocation from now on fail, and those behind it if so wanted.
void failAt(long number, Failing failing);
/// No allocation fails any more.
void succeed();

/// Allocations since failAt until succeed, and whether one of them has failed.
long made();
bool hasFailed();

/// Calls `function`, which has to last until then, before this thread's next allocation.
void beforeNext(const std::function<void()>& function);

/// Blocks of operator new that have not been deleted; those of one size below 512.
long outstandingBlocks();
long outstandingBlocks(std::size_t size);
/// Strings of strndup that have not been freed, and how many were ever made.
long outstandingStrings();
long stringsMade();

}  // namespace allocations
