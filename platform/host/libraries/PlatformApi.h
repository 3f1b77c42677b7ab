// Marks the functions a platform library gives away. All the rest stays inside.
#pragma once

/// The C interface.
#define PLATFORM_API __attribute__((visibility("default")))

/// What another of the platform libraries uses. A program that holds the platform itself
/// keeps it to itself: the libraries may be in the same process.
#ifdef CORVANE_PLATFORM_IN_PROGRAM
#define PLATFORM_SHARED
#else
#define PLATFORM_SHARED __attribute__((visibility("default")))
#endif
