// Marks the functions a platform library gives away: its C interface, and what
// another of the platform libraries calls. All the rest stays inside.
#pragma once

#define PLATFORM_API __attribute__((visibility("default")))
