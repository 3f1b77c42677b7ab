// corvane new: makes a plugin project of the installed template.
#include "tools/corvane/new/NewCommand.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

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
                                 "; CORVANE_TEMPLATE can name its directory");
    }
    return directory;
}

// What tells CMake where this installation is, if it doesn't look there anyway.
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
    auto* const command = app.add_subcommand("new", "Make a plugin project, with a test");
    const auto words = std::make_shared<Words>();
    command->add_option("NAME", words->name, "Name of the plugin; its library is lib<NAME>.so")
        ->required()
        ->type_name("")
        ->check([](const std::string& name) { return complaintAboutName(name); });
    command->add_option("--dir", words->directory, "Directory of the project; else NAME")
        ->type_name("DIR");
    command->callback([words] { make(*words); });
}

}  // namespace corvane::tool
