// Runs the daemon's main with three plugins, from start to stop, while allocations fail.
#include <Ecore.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <memory>

#include "daemon/src/Plugin.h"
#include "tests/daemon/allocation/Allocations.h"
#include "tests/daemon/allocation/PluginCounts.h"
#include "tests/daemon/allocation/Prepare.h"
#include "tests/daemon/allocation/Sweep.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/IntendedLeak.h"

PluginCounts pluginCounts;

/// The daemon's main, renamed by a compile definition.
int daemonMain(int, char**);

namespace {

constexpr int PLUGINS = 3;

bool mainLoopLibraryFails = false;

/// noexcept: an exception that leaves main ends the process.
int runDaemon() noexcept {
    return daemonMain(0, nullptr);
}

class DaemonScenario : public Scenario {
public:
    DaemonScenario() {
        require(chdir(DAEMON_DIRECTORY) == 0, "no directory for the daemon");
        prepareDelegator();
        // The first Plugin also allocates objects that live until the process exits.
        { const Plugin first; }
        const long used = allocations::outstandingBlocks();
        {
            Plugin plugin;
            plugin.create("a");
            // This Plugin is on the stack. In the daemon each Plugin is one more block.
            m_blocksOfPlugin = 1 + allocations::outstandingBlocks() - used;
        }
        m_ofSameSize = allocations::outstandingBlocks(sizeof(Plugin));
        ecore_job_add([](void*) { ecore_main_loop_quit(); }, nullptr);
    }

    void run() override { m_result = runDaemon(); }

    void check() override {
        if (!allocations::hasFailed()) {
            require(m_result == 0, "not ended in order");
            require(pluginCounts.started == PLUGINS && pluginCounts.jobs == PLUGINS,
                    "not every plugin started");
        }
        if (m_result == 0) {
            require(pluginCounts.stopped == pluginCounts.started, "not every plugin stopped");
        }
        // If memory runs out during discovery, the plugins found before are not deleted.
        if (m_result != 0 && pluginCounts.started == 0) {
            leaves(0, [blocks = m_blocksOfPlugin, others = m_ofSameSize] {
                return blocks * (allocations::outstandingBlocks(sizeof(Plugin)) - others);
            });
        }
    }

private:
    long m_blocksOfPlugin = 0;
    long m_ofSameSize = 0;
    int m_result = 0;
};

}  // namespace

extern "C" {
// NOLINTBEGIN: the linker's names
int __real_ecore_init();

int __wrap_ecore_init() {
    return mainLoopLibraryFails ? 0 : __real_ecore_init();
}
// NOLINTEND
}

TEST(DaemonAllocationTest, StartsAndStopsWithThreePlugins) {
    // Initialised once for all runs: it takes long and creates the library's threads and files.
    setenv("EINA_LOG_LEVEL", "0", 0);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=no-bus", 0);
    {
        const IntendedLeak leak;  // of the library itself, in modules that it has unloaded
        ASSERT_GT(ecore_init(), 0);
    }
    std::signal(SIGCHLD, SIG_DFL);  // the sweep waits for its children
    expectToSurvive("start and stop with 3 plugins",
                    [] { return std::make_unique<DaemonScenario>(); }, 95, {"~TaskInvokerImpl"});
}

TEST(DaemonFaultTest, EndsAtOnceWithoutItsMainLoopLibrary) {
    fake_platform::reset();
    mainLoopLibraryFails = true;
    EXPECT_EQ(runDaemon(), -1);
    mainLoopLibraryFails = false;
    EXPECT_TRUE(fake_platform::calls().empty());
    EXPECT_EQ(fake_platform::lines().size(), 7U);
    EXPECT_EQ(fake_platform::count(") > exception : fail to ecore_init()"), 1);
    fake_platform::reset();
}
