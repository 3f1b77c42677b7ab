// The broker's table of virtual functions as the program has it, and what has moved in
// it since another.
#pragma once

#include <string>
#include <vector>

/// The operations behind the destructor, in the order of their slots, each as
/// "name(parameter types)" with all type aliases resolved. Needs a program that
/// exports its symbols. Throws std::runtime_error where a slot has no name.
std::vector<std::string> operationTable();

/// A line for each slot of `was` that holds something else `now`, at most five and the
/// number of the others; empty if there is none. What is new at the end doesn't count.
std::string movedOperations(const std::vector<std::string>& was,
                            const std::vector<std::string>& now);
