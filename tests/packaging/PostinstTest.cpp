// Tests of what the package's postinst script does to a plugin directory that already exists.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

/// A root directory with a world-writable plugin directory, and stub programs that only record
/// their calls.
class PostinstTest : public testing::Test {
protected:
    PostinstTest() {
        fs::create_directories(plugins());
        fs::permissions(plugins(), fs::perms(0777));
        fs::create_directory(m_root / "programs");
        for (const std::string name : {"chown", "systemctl", "systemd-sysusers",
                                       "deb-systemd-helper", "deb-systemd-invoke"}) {
            program(name, "exit 0");
        }
        program("dpkg-statoverride", "exit 1");
    }

    void program(const std::string& name, const std::string& end) const {
        const auto path = m_root / "programs" / name;
        std::ofstream(path) << "#!/bin/sh\necho " << name << " \"$*\" >> " << m_root / "done"
                            << '\n'
                            << end << '\n';
        fs::permissions(path, fs::perms(0755));
    }

    // Runs the script. Returns the calls of the stub programs, one in each line.
    std::string configure() const {
        const auto result = ChildProcess::run(
            {{"sh", POSTINST, "configure", ""},
             {},
             {{"PATH", (m_root / "programs").string() + ":/usr/bin:/bin"}, {"DPKG_ROOT", m_root}}});
        EXPECT_EQ(result.status, 0) << result.errors;
        std::ifstream done(m_root / "done");
        return {std::istreambuf_iterator<char>(done), {}};
    }

    fs::perms permissions() const { return fs::status(plugins()).permissions(); }
    fs::path plugins() const { return m_root / "usr/share/corvane/plugins"; }

    TemporaryDirectory m_temporary;
    const fs::path m_root = m_temporary.path();
};

TEST_F(PostinstTest, MakesThePluginDirectoryRoots) {
    EXPECT_THAT(configure(), HasSubstr("\nchown root:root " + plugins().string() + '\n'));
    EXPECT_EQ(permissions(), fs::perms(0755));
}

TEST_F(PostinstTest, LeavesItAsTheAdministratorOverrodeIt) {
    program("dpkg-statoverride", "exit 0");
    const auto done = configure();
    EXPECT_THAT(done, HasSubstr("dpkg-statoverride --list /usr/share/corvane/plugins\n"));
    EXPECT_THAT(done, Not(HasSubstr("chown")));
    EXPECT_EQ(permissions(), fs::perms(0777));
}

}  // namespace
