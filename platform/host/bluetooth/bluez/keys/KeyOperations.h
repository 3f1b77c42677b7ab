// The operations of the AV/C panel, as remote controls send them, behind the keys
// that BlueZ turns them into.
#pragma once

#include <optional>

namespace corvane::host {

/// The operation id of a KEY_ code of linux/input.h.
std::optional<unsigned char> operationOfKey(int key);

}  // namespace corvane::host
