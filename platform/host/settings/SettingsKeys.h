// The table of all settings: sections, keys, and the values they may have.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/host/settings/Settings.h"

namespace corvane::host {

bool isSection(std::string_view name);

/// "the sections are ...".
std::string allowedSections();

/// Stores a value. Returns what is wrong and what is allowed if the section, which exists,
/// has no such key or the key may not have such a value; `settings` is as before then.
std::optional<std::string> storeSetting(Settings& settings, std::string_view section,
                                        std::string_view key, std::string_view value);

}  // namespace corvane::host
