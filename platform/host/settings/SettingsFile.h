// Reads a file of settings: sections "[name]", lines "key = value", comments from '#' or
// ';' at the start of a line, or from " ;" to its end.
#pragma once

#include <string>

#include "platform/host/settings/Settings.h"

namespace corvane::host {

enum class AbsentFile { allowed, reported };

/// Adds what the file at `path` says to `settings`, and a complaint for every line that
/// can't be used. Errors: std::bad_alloc.
void readSettingsFile(Settings& settings, const std::string& path, AbsentFile absent);

}  // namespace corvane::host
