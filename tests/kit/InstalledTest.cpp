// Tests of the installed kit, used as plugin authors use it: a project created by `corvane new`,
// plain compiler calls and an installation that has been moved. The daemon loads the new plugin.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/Installation.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class InstalledTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        s_installation = std::make_unique<Installation>();
        s_installation->installWhole();
    }
    static void TearDownTestSuite() { s_installation.reset(); }
    static Installation& installation() { return *s_installation; }

    /// Creates, builds and tests a project. Returns its build directory.
    static fs::path buildNewProject(const std::string& name) {
        auto& installed = installation();
        const auto project = installed.unusedDirectory();
        const auto build = project / "build";
        installed.succeed({installed.tool(), "new", name, "--dir", project}, ".");
        installed.succeed({CMAKE, "-S", project, "-B", build, "-G", "Ninja",
                           "-DCMAKE_CXX_COMPILER=" COMPILER, "-DCMAKE_CXX_FLAGS=" FLAGS " -Werror",
                           "-DCMAKE_PREFIX_PATH=" + installed.prefix().string()},
                          project);
        installed.succeed({CMAKE, "--build", build, "-j", "2"}, project);
        const auto tested = installed.succeed({"ctest", "--output-on-failure"}, build);
        EXPECT_THAT(tested, HasSubstr("100% tests passed, 0 tests failed out of 3"));
        return build;
    }

    /// Runs the compiler with warnings as errors, and with `words` as the shell expands them.
    static ChildProcess::Result compile(const std::string& words) {
        return installation().run(
            {"sh", "-c", COMPILER " " FLAGS " -std=c++20 -Wall -Wextra -Werror " + words},
            installation().prefix().parent_path());
    }

    static std::vector<std::string> exportsOf(const fs::path& library) {
        std::istringstream lines(
            installation().succeed({"nm", "-D", "--defined-only", "-P", library}, "."));
        std::vector<std::string> names;
        for (std::string line; std::getline(lines, line);) {
            names.push_back(line.substr(0, line.find(' ')));
        }
        return names;
    }

private:
    static inline std::unique_ptr<Installation> s_installation;
};

void expectDaemonToLoad(const fs::path& library, const fs::path& directory, const fs::path& tool) {
    fs::create_directories(directory / "plugins");
    fs::copy(library, directory / "plugins");
    ChildProcess daemon({{DAEMON}, directory, {{"CORVANE_INJECT_SOCKET", "inject.sock"}}});
    ASSERT_TRUE(daemon.waitForLine("end init func")) << daemon.errors();
    ASSERT_TRUE(daemon.waitForLine("OUT << [void CommonDaemon::start()")) << daemon.errors();
    const auto emitted = ChildProcess::run(
        {{tool, "--socket", "inject.sock", "emit", "bt-adapter-state-changed", "state=off"},
         directory});
    EXPECT_EQ(emitted.status, 0) << emitted.errors;
    EXPECT_TRUE(daemon.waitForLine("the adapter is off")) << daemon.errors();
    EXPECT_EQ(daemon.terminate(), 0) << daemon.errors();
}

TEST_F(InstalledTest, NewProjectBuildsPassesItsTestAndRunsInTheDaemon) {
    const auto build = buildNewProject("first-watch");
    const auto library = build / "libfirst-watch.so";
    EXPECT_THAT(exportsOf(library), UnorderedElementsAre("PLUGIN_INIT", "PLUGIN_DEINIT"));
    expectDaemonToLoad(library, installation().unusedDirectory(), installation().tool());

    const auto root = installation().unusedDirectory();
    installation().succeed({"env", "DESTDIR=" + root.string(), CMAKE, "--install", build.string()},
                           ".");
    EXPECT_TRUE(fs::exists(root / fs::path(PLUGIN_DIR).relative_path() / "libfirst-watch.so"));
}

TEST_F(InstalledTest, PlainCompilerBuildsAPlugin) {
    const auto library = installation().prefix().parent_path() / "libplain.so";
    const auto built = compile("-shared -fPIC " +
                               (installation().templateDirectory() / "src/Plugin.cpp").string() +
                               " $(pkg-config --cflags --libs corvane-plugin) -o libplain.so");
    ASSERT_EQ(built.status, 0) << built.errors;
    EXPECT_THAT(exportsOf(library), UnorderedElementsAre("PLUGIN_INIT", "PLUGIN_DEINIT"));
    const auto variable =
        installation().succeed({"pkg-config", "--variable=plugindir", "corvane-plugin"}, ".");
    EXPECT_EQ(fs::path(variable.substr(0, variable.find('\n'))) / "", fs::path(PLUGIN_DIR) / "");
}

TEST_F(InstalledTest, PluginWithoutInitEntryIsNotLinked) {
    const auto source = installation().prefix().parent_path() / "NoInit.cpp";
    std::ofstream(source) << "int PLUGIN_INIT(void*) { return 0; }\n";  // not extern "C"
    const auto built = compile("-shared -fPIC " + source.string() +
                               " $(pkg-config --cflags --libs corvane-plugin) -o libnoinit.so");
    EXPECT_NE(built.status, 0);
    EXPECT_THAT(built.errors, HasSubstr("PLUGIN_INIT"));
}

TEST_F(InstalledTest, HeadersOfTheTestKitCompileWithoutWarnings) {
    const auto include = (installation().prefix() / "include").string();
    const auto checked =
        compile("-fsyntax-only -x c++ -include corvane/testkit.h -I" + include + " /dev/null");
    EXPECT_EQ(checked.status, 0) << checked.errors;
}

// An installation for a device has no test kit, and the sysroot need not have GoogleTest.
TEST_F(InstalledTest, NewProjectIsCrossBuiltWithoutTestsIfThereIsNoTestKit) {
    auto& installed = installation();
    const auto device = installed.unusedDirectory();
    fs::copy(installed.prefix(), device, fs::copy_options::recursive);
    fs::remove(device / INSTALL_LIBDIR / "cmake/Corvane/CorvaneTestkitTargets.cmake");
    const auto project = installed.unusedDirectory();
    const auto build = project / "build";
    installed.succeed({installed.tool(), "new", "device-watch", "--dir", project}, ".");
    installed.succeed(
        {CMAKE, "-S", project, "-B", build, "-G", "Ninja", "-DCMAKE_CXX_COMPILER=" COMPILER,
         "-DCMAKE_SYSTEM_NAME=Linux", "-DCMAKE_PREFIX_PATH=" + device.string()},
        project);
    installed.succeed({CMAKE, "--build", build}, project);
    EXPECT_TRUE(fs::exists(build / "libdevice-watch.so"));
    EXPECT_FALSE(fs::exists(build / "test"));
}

TEST_F(InstalledTest, MayBeMoved) {
    installation().move();
    buildNewProject("SecondWatch");
}

}  // namespace
