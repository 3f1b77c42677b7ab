// Tests of `corvane new`, which they run as a program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class NewTest : public testing::Test {
protected:
    ChildProcess::Result runNew(const std::vector<std::string>& words,
                                const std::string& templateDirectory = TEMPLATE) const {
        std::vector<std::string> command{TOOL, "new"};
        command.insert(command.end(), words.begin(), words.end());
        return ChildProcess::run({command, m_directory, {{"CORVANE_TEMPLATE", templateDirectory}}});
    }
    std::string contentOf(const fs::path& file) const {
        std::ifstream input(m_directory / file);
        return {std::istreambuf_iterator<char>(input), {}};
    }
    void write(const fs::path& file, const std::string& text) const {
        fs::create_directories((m_directory / file).parent_path());
        std::ofstream(m_directory / file) << text;
    }
    std::vector<std::string> filesIn(const fs::path& directory) const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_directory / directory)) {
            names.push_back(entry.path().filename());
        }
        return names;
    }

    TemporaryDirectory m_temporary;
    const fs::path m_directory = m_temporary.path();
};

TEST_F(NewTest, PutsTheNameIn) {
    const auto result = runNew({"volume-2_keeper"});
    ASSERT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output, AllOf(HasSubstr("cd volume-2_keeper"), HasSubstr("ctest")));
    EXPECT_THAT(contentOf("volume-2_keeper/CMakeLists.txt"),
                HasSubstr("corvane_add_plugin(volume-2_keeper SOURCES"));
    EXPECT_THAT(contentOf("volume-2_keeper/src/Plugin.cpp"), HasSubstr("\"VOLUME_2_KEEPER\""));
    EXPECT_THAT(contentOf("volume-2_keeper/test/PluginTest.cpp"),
                HasSubstr("TEST(Volume2KeeperTest, "));
    EXPECT_THAT(
        filesIn("volume-2_keeper"),
        testing::UnorderedElementsAre(".gitignore", "CMakeLists.txt", "README.md", "src", "test"));
    for (const auto& entry : fs::recursive_directory_iterator(m_directory)) {
        if (entry.is_regular_file()) {
            const auto text = contentOf(entry.path());
            EXPECT_THAT(text, AllOf(Not(HasSubstr("my-plugin")), Not(HasSubstr("MyPlugin")),
                                    Not(HasSubstr("MY_PLUGIN"))));
        }
    }
}

TEST_F(NewTest, PutsANameThatIsLikeTheTemplatesInOnce) {
    write("template/file", "my-plugin MyPlugin MY_PLUGIN");
    ASSERT_EQ(runNew({"MY_PLUGIN-my-plugin"}, "template").status, 0);
    EXPECT_EQ(contentOf("MY_PLUGIN-my-plugin/file"),
              "MY_PLUGIN-my-plugin MYPLUGINMyPlugin MY_PLUGIN_MY_PLUGIN");
}

TEST_F(NewTest, TakesADirectory) {
    fs::create_directory(m_directory / "empty");
    for (const std::string directory : {"empty", "made"}) {
        ASSERT_EQ(runNew({"keeper", "--dir", directory}).status, 0);
        EXPECT_THAT(contentOf(directory + "/README.md"), HasSubstr("# keeper"));
    }
}

TEST_F(NewTest, RefusesNamesThatNoLibraryAndTargetCanHave) {
    for (const std::string name : {"", "2nd", "-x", "_x", "a b", "a/b", "../a", "größe", "a.so"}) {
        const auto result = runNew({"--", name});
        EXPECT_EQ(result.status, 2) << name;
        EXPECT_THAT(result.errors, HasSubstr("can't be called \"" + name +
                                             "\"; a name has letters, digits, - and _"));
    }
    EXPECT_THAT(runNew({std::string(65, 'x')}).errors, HasSubstr("at most 64"));
    EXPECT_THAT(runNew({"test"}).errors, HasSubstr("CMake has a target of that name"));
    EXPECT_THAT(filesIn("."), IsEmpty());
}

TEST_F(NewTest, RefusesADirectoryThatIsNotEmpty) {
    write("keeper/file", "mine");
    const auto result = runNew({"keeper"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "corvane: the directory keeper isn't empty\n");
    EXPECT_THAT(filesIn("keeper"), testing::ElementsAre("file"));
    EXPECT_EQ(runNew({"keeper", "--dir", "keeper/file"}).status, 1);
    EXPECT_EQ(contentOf("keeper/file"), "mine");
}

TEST_F(NewTest, LeavesNothingHalfMade) {
    write("template/a", "text");
    write("template/sub/b", "text");
    fs::create_symlink("nowhere", m_directory / "template/sub/c");
    fs::create_directory(m_directory / "empty");
    const auto result = runNew({"keeper"}, "template");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "corvane: template/sub/c can't be read\n");
    EXPECT_FALSE(fs::exists(m_directory / "keeper"));
    EXPECT_EQ(runNew({"keeper", "--dir", "empty"}, "template").status, 1);
    EXPECT_THAT(filesIn("empty"), IsEmpty());
}

TEST_F(NewTest, NamesWhatIsMissing) {
    EXPECT_THAT(runNew({"keeper"}, "nowhere").errors,
                AllOf(HasSubstr("the template isn't in nowhere"), HasSubstr("CORVANE_TEMPLATE")));
    EXPECT_THAT(runNew({"keeper", "--dir", "missing/keeper"}).errors, HasSubstr("missing/keeper"));
}

}  // namespace
