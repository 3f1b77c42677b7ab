// A plugin project, made of a template: the directory tree of a plugin called my-plugin.
#pragma once

#include <filesystem>
#include <string>

namespace corvane::tool {

/// Why a plugin can't have that name; empty if it can. The name goes into names of files, CMake
/// targets and C++ classes.
std::string complaintAboutName(const std::string& name);

/// Copies the tree `templateDirectory` to `directory`, which is made unless it exists and is
/// empty, with `name` in place of my-plugin, MyPlugin and MY_PLUGIN. Throws std::runtime_error
/// or one derived from it, and then leaves nothing of the project behind.
void makeProject(const std::filesystem::path& templateDirectory,
                 const std::filesystem::path& directory, const std::string& name);

}  // namespace corvane::tool
