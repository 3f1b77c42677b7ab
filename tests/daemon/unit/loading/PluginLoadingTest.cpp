// Plugin objects whose library can't be opened or initialised.
#include <gtest/gtest.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

#include "daemon/src/Plugin.h"
#include "tests/support/FakePlatform.h"

namespace {

class PluginLoadingTest : public testing::Test {
protected:
    PluginLoadingTest() {
        fake_platform::reset();
        EXPECT_EQ(chdir(UNIT_PLUGIN_ROOT), 0);
    }
    ~PluginLoadingTest() override { fake_platform::reset(); }

    /// Loads the library. Returns the text of the exception, or an empty string without one.
    std::string failureOf(const std::string& library) {
        m_plugin.create(library);
        try {
            m_plugin.load();
            return "";
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    }

    Plugin m_plugin;
};

}  // namespace

TEST_F(PluginLoadingTest, ALibraryThatIsNotThereCantBeOpened) {
    EXPECT_EQ(failureOf("libmissing.so"), "fail to open plugin");
    EXPECT_EQ(fake_platform::count(") > end dlopen : libmissing.so"), 1);
}

TEST_F(PluginLoadingTest, ALibraryWithoutAnInitFunctionIsClosed) {
    EXPECT_EQ(failureOf("no_init.so"), "fail to find init function");
    EXPECT_EQ(fake_platform::count("start init func"), 0);
    m_plugin.unload();
    EXPECT_EQ(fake_platform::count("start deinit func"), 0);
}

TEST_F(PluginLoadingTest, APluginThatReturnsANegativeValueIsClosed) {
    EXPECT_EQ(failureOf("init_returns_minus_3.so"), "plugin return negative value : -3");
    EXPECT_EQ(fake_platform::count("end init func"), 1);
}
