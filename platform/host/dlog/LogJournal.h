// The journal as a place for records with fields.
#pragma once

#include <string_view>

namespace corvane::host {

/// A place in a source. Unknown, without a file or a function.
struct LogPlace {
    const char* file;
    const char* function;
    int line;
};

/// Sends a record with its priority, tag and text, and the place if it is known. Returns 0 or a
/// negative error. Any thread. Errors: std::bad_alloc.
int sendToJournal(int priority, const char* tag, std::string_view text, const LogPlace& place);

}  // namespace corvane::host
