// Replaces operator new and delete, strndup and free in a test program. The replacements count the
// outstanding allocations and fail where a test requests it. The linker option --wrap redirects
// the calls of strndup and free in the program's object files.
#pragma once

#include <cstddef>
#include <functional>

/// Threads: any, except that failAt and succeed are called on one thread while no other thread
/// allocates.
namespace allocations {

enum class Failing { Once, FromThenOn };

/// Starts counting and makes the `number`-th allocation from now fail, with FromThenOn also all
/// later ones. With 0 and Once, none fails.
void failAt(long number, Failing failing);
/// Stops counting. No allocation fails any more.
void succeed();

/// Returns the number of allocations between failAt and succeed.
long made();
/// Returns true if one of them has failed.
bool hasFailed();

/// Calls `function` once, before the calling thread's next allocation. It must live until then.
void beforeNext(const std::function<void()>& function);

/// Returns the number of blocks from operator new that have not been deleted.
long outstandingBlocks();
/// The same for blocks of one size, which must be below 512.
long outstandingBlocks(std::size_t size);
/// Returns the number of strings from strndup that have not been freed.
long outstandingStrings();
/// Returns the number of strings that strndup has returned since the program started.
long stringsMade();

}  // namespace allocations
