// Creates a plugin project from a template: the directory tree of a plugin called my-plugin.
#pragma once

#include <filesystem>
#include <string>

namespace corvane::tool {

/// Returns why a plugin can't have this name, or an empty text. The name becomes part of file
/// names, CMake targets and C++ classes.
std::string complaintAboutName(const std::string& name);

/// Copies the tree `templateDirectory` to `directory` and replaces my-plugin, MyPlugin and
/// MY_PLUGIN by `name`. The directory must be empty or missing. On failure it removes what it
/// created and throws std::runtime_error or a class derived from it.
void makeProject(const std::filesystem::path& templateDirectory,
                 const std::filesystem::path& directory, const std::string& name);

}  // namespace corvane::tool
