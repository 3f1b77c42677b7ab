// Marks the functions that a platform library exports. All others are hidden.
#pragma once

/// The C interface.
#define PLATFORM_API __attribute__((visibility("default")))

/// What the platform libraries use of the core library.
#define PLATFORM_SHARED __attribute__((visibility("default")))
