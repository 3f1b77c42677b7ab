// Reads the broker's vtable in this program, and compares it with an earlier one.
#pragma once

#include <string>
#include <vector>

/// Returns the operations after the destructor, in the order of their slots, each as
/// "name(parameter types)" with all type aliases resolved. The program must export its symbols.
/// Throws std::runtime_error if a slot has no symbol.
std::vector<std::string> operationTable();

/// Returns a line for each slot of `was` that differs in `now`. After five lines, only the number
/// of the others is added. Ignores new operations at the end. Returns "" if nothing has moved.
std::string movedOperations(const std::vector<std::string>& was,
                            const std::vector<std::string>& now);
