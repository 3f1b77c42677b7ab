// Remote controls send AV/C panel operations, which BlueZ converts to Linux key codes. This
// converts them back.
#pragma once

#include <optional>

namespace corvane::host {

/// Returns the operation id of a KEY_ code of linux/input.h, or nothing if it has none.
std::optional<unsigned char> operationOfKey(int key);

}  // namespace corvane::host
