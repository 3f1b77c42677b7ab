// The interface between the test and the plugin of a frozen release. It uses plain types only,
// because the two are compiled with different versions of the headers.
#pragma once

#include <cstddef>

/// Receives the events. Owned by the test.
struct FrozenListener {
    /// `event` holds the arguments as text, as the release's headers define them. It may contain
    /// zero bytes.
    void (*receive)(FrozenListener* self, const char* event, std::size_t length);
};

/// An operation of the broker, called through the class of the release's header.
struct FrozenOperation {
    const char* name;
    const char* platformCall;  // called for the first or last subscriber; null if there is none
    int (*call)(void* broker, FrozenListener* listener);
};

/// Returns all operations in the order of the release. They are valid while the plugin is loaded.
using FrozenOperations = const FrozenOperation* (*)(int* count);
constexpr const char* FROZEN_OPERATIONS_SYMBOL = "FROZEN_OPERATIONS";
