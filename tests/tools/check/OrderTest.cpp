// Tests that `corvane order` shows the order in which the daemon loads its plugins.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/support/process/TemporaryDirectory.h"
#include "tests/tools/check/RunTool.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Runs the command in a temporary directory.
class OrderTest : public testing::Test {
protected:
    OrderTest() { fs::create_directory(m_directory / "plugins"); }

    fs::path plugins() const { return m_directory / "plugins"; }
    void file(const std::string& name) const { std::ofstream(plugins() / name) << "no library"; }
    void setProductType(int type) const {
        std::ofstream(m_directory / "info")
            << "com.ondrix/featureconf/product.zarn_product_type = " << type << '\n';
    }

    nlohmann::json order() const {
        const auto result = runTool({"order", "--json", plugins()},
                                    {{"CORVANE_SYSTEM_INFO", m_directory / "info"}});
        EXPECT_EQ(result.errors, "");
        return nlohmann::json::parse(result.output);
    }

    static std::vector<std::string> column(const nlohmann::json& rows, const char* name) {
        std::vector<std::string> cells;
        for (const auto& row : rows) {
            cells.push_back(row.at(name).is_string() ? row.at(name).get<std::string>()
                                                     : row.at(name).dump());
        }
        return cells;
    }

    // Returns the plugins of the same directory in the order in which the daemon loads them,
    // according to its log.
    std::vector<std::string> loadedByTheDaemon() const {
        ChildProcess daemon(
            {{DAEMON},
             m_directory,
             {{"CORVANE_PLATFORM_CONF", "/dev/null"},
              {"CORVANE_SYSTEM_INFO", m_directory / "info"},
              {"CORVANE_LOG_LEVEL", "debug"},
              {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (m_directory / "no-bus").string()},
              {"XDG_RUNTIME_DIR", m_directory},
              {"HOME", m_directory}},
             {"CORVANE_INJECT_SOCKET"}});
        EXPECT_TRUE(daemon.waitForLine("OUT << [void CommonDaemon::start()")) << daemon.errors();
        daemon.terminate();
        std::istringstream log(daemon.errors());
        const std::string mark = "load plugin : ";
        std::vector<std::string> names;
        for (std::string line; std::getline(log, line);) {
            const auto at = line.find(mark);
            if (at != std::string::npos) {
                names.push_back(line.substr(at + mark.size(), line.find('{') - at - mark.size()));
            }
        }
        return names;
    }

    TemporaryDirectory m_temporary;
    const fs::path m_directory = m_temporary.path();
};

TEST_F(OrderTest, IsTheDaemonsOwnAlsoAmongEquals) {
    for (const char* name :
         {"liba.so", "libb.so", "libc.so", "libd.so", "libe.so", "libf.so", "libg.so",
          "libbleapp.so", "libbtapp-lite.so", "libZarnDongleDetectNotification.so", "other.txt"}) {
        file(name);
    }
    setProductType(8);
    const auto names = column(order()["order"], "file");
    EXPECT_EQ(names.front(), "libZarnDongleDetectNotification.so");
    EXPECT_EQ(names, loadedByTheDaemon());
}

TEST_F(OrderTest, FourEqualOnesAreLoadedFirstThirdSecondFourthOfTheDirectory) {
    for (const char* name : {"liba.so", "libb.so", "libc.so", "libd.so"}) {
        file(name);
    }
    const auto json = order();
    EXPECT_THAT(column(json["order"], "found"), ElementsAre("1", "3", "2", "4"));
    EXPECT_THAT(json["ties"], ElementsAre(5));
}

TEST_F(OrderTest, TellsWhereAPriorityComesFrom) {
    file("libZarnDongleDetectNotification.so");
    file("libbleapp.so");
    file("libbtapp-lite.so");
    file("libx.so");
    setProductType(7);
    const auto json = order();
    EXPECT_THAT(column(json["order"], "priority"), ElementsAre("10", "8", "7", "5"));
    EXPECT_THAT(column(json["order"], "rule"),
                ElementsAre("product-type", "name", "marker-missing", "ordinary"));
    EXPECT_THAT(json["ties"], IsEmpty());
    EXPECT_THAT(json["order"][2]["why"], HasSubstr("there is no marker file: "));
    fs::remove(plugins() / "libx.so");
    setProductType(6);
    EXPECT_THAT(column(order()["order"], "rule"),
                ElementsAre("name", "marker-missing", "product-type-other"));
}

TEST_F(OrderTest, TellsWhyAFileIsNoCandidate) {
    file("a.so.1");
    fs::create_directory(plugins() / "b.so");
    fs::create_symlink("nowhere", plugins() / "c.so");
    file("d.so");
    const auto json = order();
    EXPECT_THAT(column(json["order"], "file"), ElementsAre("d.so"));
    EXPECT_THAT(column(json["skipped"], "file"), ElementsAre("a.so.1", "b.so", "c.so"));
    EXPECT_THAT(column(json["skipped"], "rule"),
                ElementsAre("other-suffix", "not-a-regular-file", "unreachable"));
    EXPECT_EQ(json["skipped"][2]["why"], "can't be examined: No such file or directory");
}

TEST_F(OrderTest, TellsWhyAFileCannotBeOpenedOrRead) {
    fs::create_symlink("/proc/sys/net/ipv4/route/flush", plugins() / "write-only.so");
    const auto unopened = runTool({"order", plugins()});
    EXPECT_THAT(unopened.output, HasSubstr("write-only.so  no rule for this name; can't be opened: "
                                           "Permission denied\n"));
    fs::remove(plugins() / "write-only.so");
    // Nothing is mapped at the address 0.
    fs::create_symlink("/proc/self/mem", plugins() / "memory.so");
    EXPECT_EQ(order()["order"][0]["why"],
              "no rule for this name; can't be read: Input/output error");
}

TEST_F(OrderTest, ShowsATableWithAWordAboutEquals) {
    file("libone.so");
    const auto one = runTool({"order", plugins()});
    EXPECT_EQ(one.status, 0);
    EXPECT_THAT(one.output,
                HasSubstr("\n1     5         1      libone.so  no rule for this name\n"));
    EXPECT_THAT(one.output, Not(HasSubstr("equal priority")));
    file("libtwo.so");
    EXPECT_THAT(runTool({"order", plugins()}).output, HasSubstr("equal priority"));
}

TEST_F(OrderTest, EscapesControlCharactersOfFileNames) {
    file("lib\033[2Jx.so");
    file("lib\033[2Jx.txt");
    EXPECT_THAT(
        runTool({"order", plugins()}).output,
        AllOf(HasSubstr("lib\\x1b[2Jx.so"), HasSubstr("lib\\x1b[2Jx.txt"), Not(HasSubstr("\033"))));
}

TEST_F(OrderTest, ReadsTheDaemonsOwnDirectoryIfNoneIsGiven) {
    const auto result = runTool({"order"});
    EXPECT_THAT(result.output, HasSubstr("libadapter-watch.so"));
    EXPECT_EQ(result.errors, "") << "no other user can write to the build tree";
}

TEST_F(OrderTest, RefusesWhatIsNoDirectory) {
    const auto missing = runTool({"order", m_directory / "none"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.errors, "corvane: " + (m_directory / "none").string() +
                                  " can't be read: No such file or directory\n");
    file("libx.so");
    EXPECT_THAT(runTool({"order", plugins() / "libx.so"}).errors,
                HasSubstr("can't be read: Not a directory"));
}

TEST_F(OrderTest, RefusesADirectoryThatCannotBeReadToItsEnd) {
    file("libx.so");
    // The library is preloaded before AddressSanitizer's, which would report that.
    const auto result =
        runTool({"order", plugins()},
                {{"LD_PRELOAD", BREAKING_LIBRARY}, {"ASAN_OPTIONS", "verify_asan_link_order=0"}});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "corvane: " + plugins().string() + " can't be read to its end: Input/output error\n");
}

TEST_F(OrderTest, RefusesADirectoryThatMayNotBeRead) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "nothing is refused to root";
    }
    fs::permissions(plugins(), fs::perms::none);
    EXPECT_THAT(runTool({"order", plugins()}).errors,
                HasSubstr("can't be read: Permission denied"));
    fs::permissions(plugins(), fs::perms::owner_all);
}

}  // namespace
