// Tests the directory that script/server chooses for the daemon's socket.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/support/process/HostFixture.h"

namespace {

namespace fs = std::filesystem;

class SocketDirectoryTest : public HostFixture {
protected:
    ChildProcess::Result choose() const {
        return ChildProcess::run({{"bash", "-c", "set -e; . " COMMON_SCRIPT "; socket_directory"},
                                  {},
                                  {{"XDG_RUNTIME_DIR", directory()}, {"TMPDIR", directory()}}});
    }

    fs::path first() const { return directory() / "corvane"; }
    fs::path fallback() const { return directory() / ("corvane-" + std::to_string(geteuid())); }
};

TEST_F(SocketDirectoryTest, IsCreatedForThisUserOnly) {
    EXPECT_EQ(choose().output, first().string() + '\n');
    EXPECT_EQ(fs::status(first()).permissions(), fs::perms(0700));
    EXPECT_EQ(choose().output, first().string() + '\n');
}

TEST_F(SocketDirectoryTest, FallsBackWhereOthersMayWrite) {
    fs::create_directory(first());
    fs::permissions(first(), fs::perms(0770));
    EXPECT_EQ(choose().output, fallback().string() + '\n');
    EXPECT_EQ(fs::status(fallback()).permissions(), fs::perms(0700));
}

TEST_F(SocketDirectoryTest, IsRefusedIfTheFallbackIsNoDirectoryOfThisUserEither) {
    fs::create_directory(directory() / "elsewhere");
    fs::create_directory_symlink("elsewhere", first());
    fs::create_directory_symlink("elsewhere", fallback());
    const auto result = choose();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              fallback().string() + " is not a directory that only you may write to\n");
}

}  // namespace
