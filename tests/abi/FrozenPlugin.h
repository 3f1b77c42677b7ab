// Between the test and the plugin of a frozen release. Plain types only: the two are
// compiled against different headers.
#pragma once

#include <cstddef>

/// The receiver of the events. Owned by the test.
struct FrozenListener {
    /// `event` is the arguments as text, as the release's headers see them; it may
    /// contain zeros.
    void (*receive)(FrozenListener* self, const char* event, std::size_t length);
};

/// One operation, called through the release's own class.
struct FrozenOperation {
    const char* name;
    const char* platformCall;  // where it ends for the first or last subscriber, or null
    int (*call)(void* broker, FrozenListener* listener);
};

/// All operations in the order of the release; valid while the plugin is loaded.
using FrozenOperations = const FrozenOperation* (*)(int* count);
constexpr const char* FROZEN_OPERATIONS_SYMBOL = "FROZEN_OPERATIONS";
