// The journal as a place for records with fields.
#pragma once

#include <string_view>

namespace corvane::host {

/// Sends a record with its priority, tag and text and, if the text starts as the daemon's
/// lines do ("<file>: <function>(<line>) > "), with these three as well. Returns 0 or a
/// negative error. Any thread. Errors: std::bad_alloc.
int sendToJournal(int priority, const char* tag, std::string_view text);

}  // namespace corvane::host
