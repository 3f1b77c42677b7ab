// The table of all settings: sections, keys, and the values they may have.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/host/settings/Settings.h"

namespace corvane::host {

bool isSection(std::string_view name);

/// Returns "the sections are ...".
std::string allowedSections();

/// Stores a value of a section that exists. If the section has no such key, or the key does not
/// allow the value, returns what is wrong and what is allowed, and leaves `settings` unchanged.
std::optional<std::string> storeSetting(Settings& settings, std::string_view section,
                                        std::string_view key, std::string_view value);

}  // namespace corvane::host
