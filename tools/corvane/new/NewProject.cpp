// Creates a plugin project from a template.
#include "tools/corvane/new/NewProject.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace corvane::tool {

namespace {

namespace fs = std::filesystem;

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

char upper(char c) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

// The three spellings of the template's name, each with its replacement.
using Spellings = std::array<std::pair<std::string_view, std::string>, 3>;

Spellings spellingsOf(const std::string& name) {
    std::string camelCase;
    std::string upperCase;
    bool wordBegins = true;
    for (const char c : name) {
        const bool isBreak = c == '-' || c == '_';
        upperCase += isBreak ? '_' : upper(c);
        if (!isBreak) {
            camelCase += wordBegins ? upper(c) : c;
        }
        wordBegins = isBreak;
    }
    return {{{"my-plugin", name}, {"MyPlugin", camelCase}, {"MY_PLUGIN", upperCase}}};
}

// One pass, so that a replacement isn't replaced again.
std::string replaced(std::string_view text, const Spellings& spellings) {
    std::string result;
    while (!text.empty()) {
        const auto found = std::ranges::find_if(
            spellings, [&](const auto& each) { return text.starts_with(each.first); });
        result += found == spellings.end() ? std::string(1, text.front()) : found->second;
        text.remove_prefix(found == spellings.end() ? 1 : found->first.size());
    }
    return result;
}

void copyFile(const fs::path& from, const fs::path& to, const Spellings& spellings) {
    std::ifstream input(from, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(input), {}};
    if (!input) {
        throw std::runtime_error(from.string() + " can't be read");
    }
    std::ofstream output(to, std::ios::binary);
    output << replaced(text, spellings);
    if (!output.flush()) {
        throw std::runtime_error(to.string() + " can't be written");
    }
}

// Removes the project again unless finish() was called.
class Unfinished {
public:
    explicit Unfinished(fs::path directory)
        : m_directory(std::move(directory)), m_isNew(fs::create_directory(m_directory)) {}
    ~Unfinished() {
        if (m_isFinished) {
            return;
        }
        std::error_code ignored;
        for (const auto& entry : fs::directory_iterator(m_directory, ignored)) {
            fs::remove_all(entry.path(), ignored);
        }
        if (m_isNew) {
            fs::remove(m_directory, ignored);
        }
    }
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

    void finish() { m_isFinished = true; }

private:
    fs::path m_directory;
    bool m_isNew;
    bool m_isFinished = false;
};

}  // namespace

std::string complaintAboutName(const std::string& name) {
    constexpr std::size_t longest = 64;
    constexpr std::array<std::string_view, 8> targets{
        "all", "clean", "edit_cache", "help", "install", "package", "rebuild_cache", "test"};
    const auto isAllowed = [](char c) { return isLetter(c) || isDigit(c) || c == '-' || c == '_'; };
    if (name.empty() || name.size() > longest || !isLetter(name.front()) ||
        !std::ranges::all_of(name, isAllowed)) {
        return "a plugin can't be called \"" + name +
               "\"; a name has letters, digits, - and _, begins with a letter and is at most " +
               std::to_string(longest) + " long";
    }
    if (std::ranges::find(targets, name) != targets.end()) {
        return "a plugin can't be called \"" + name + "\": CMake has a target of that name";
    }
    return "";
}

void makeProject(const fs::path& templateDirectory, const fs::path& directory,
                 const std::string& name) {
    if (fs::exists(directory) && !fs::is_directory(directory)) {
        throw std::runtime_error(directory.string() + " exists and is not a directory");
    }
    if (fs::exists(directory) && !fs::is_empty(directory)) {
        throw std::runtime_error("the directory " + directory.string() + " isn't empty");
    }
    const auto spellings = spellingsOf(name);
    Unfinished project(directory);
    for (const auto& entry : fs::recursive_directory_iterator(templateDirectory)) {
        auto to = directory / fs::relative(entry.path(), templateDirectory);
        // The template can't contain .gitignore: packaging checks reject such an installed file.
        if (to.filename() == "gitignore") {
            to.replace_filename(".gitignore");
        }
        if (entry.is_directory()) {
            fs::create_directory(to);
        } else {
            copyFile(entry.path(), to, spellings);
        }
    }
    project.finish();
}

}  // namespace corvane::tool
