// Reads a settings file: sections "[name]", lines "key = value", comments that start with
// '#' or ';' at the start of a line, or with " ;" after a value.
#pragma once

#include <string>

#include "platform/host/settings/Settings.h"

namespace corvane::host {

enum class AbsentFile { allowed, reported };

/// Stores the settings of the file at `path`, and adds a complaint for every line that cannot
/// be used. Errors: std::bad_alloc.
void readSettingsFile(Settings& settings, const std::string& path, AbsentFile absent);

}  // namespace corvane::host
