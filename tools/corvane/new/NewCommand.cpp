// corvane new: creates a plugin project from the installed template.
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "tools/corvane/Commands.h"
#include "tools/corvane/new/NewProject.h"

namespace corvane::tool {

namespace {

namespace fs = std::filesystem;

struct Words {
    std::string name;
    std::string directory;
};

fs::path directoryOfTool() {
    return fs::read_symlink("/proc/self/exe").parent_path();
}

fs::path templateDirectory() {
    const char* const given = std::getenv("CORVANE_TEMPLATE");
    fs::path directory = given != nullptr
                             ? fs::path(given)
                             : (directoryOfTool() / CORVANE_TEMPLATE_FROM_TOOL).lexically_normal();
    if (!fs::is_directory(directory)) {
        throw std::runtime_error("the template isn't in " + directory.string() +
                                 "; set CORVANE_TEMPLATE to its directory");
    }
    return directory;
}

// The option that tells CMake where this installation is; empty if CMake searches there anyway.
std::string prefixOption() {
    const auto prefix = directoryOfTool().parent_path().string();
    return prefix == "/usr" || prefix == "/usr/local" ? "" : " -DCMAKE_PREFIX_PATH=" + prefix;
}

void make(const Words& words) {
    const fs::path directory = words.directory.empty() ? words.name : words.directory;
    makeProject(templateDirectory(), directory, words.name);
    std::cout << "The plugin " << words.name << " is in " << directory.string()
              << ". To build and test it:\n"
              << "  cd " << directory.string() << '\n'
              << "  cmake -B build" << prefixOption() << '\n'
              << "  cmake --build build\n"
              << "  ctest --test-dir build\n";
}

}  // namespace

void addNewCommand(CLI::App& app) {
    auto* const command = app.add_subcommand("new", "Create a plugin project with a test");
    const auto words = std::make_shared<Words>();
    command->add_option("NAME", words->name, "Name of the plugin; its library is lib<NAME>.so")
        ->required()
        ->type_name("")
        ->check([](const std::string& name) { return complaintAboutName(name); });
    command->add_option("--dir", words->directory, "Directory of the project. The default is NAME")
        ->type_name("DIR");
    command->callback([words] { make(*words); });
}

}  // namespace corvane::tool
