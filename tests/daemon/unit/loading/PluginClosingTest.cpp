// A plugin's library is closed when no other thread uses it, or when a time limit has passed.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "daemon/src/Callback/Epochs.h"
#include "daemon/src/Plugin.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Gate.h"

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds WORK{100};
constexpr int BACKLOG = TaskInvokerImpl::QUEUE_CAPACITY;

bool isOpen(const std::string& library) {
    void* const handle = dlopen(("plugins/" + library).c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

/// Delivers to a plugin on a new thread. The delivery lasts until this object is destroyed.
class StuckDelivery {
public:
    explicit StuckDelivery(Plugin& plugin)
        : m_thread([this, &plugin] {
              const EpochGuard guard;
              plugin.invokeTask([this] {
                  m_isInside.open();
                  m_release.wait();
              });
          }) {
        m_isInside.wait();
    }
    ~StuckDelivery() {
        m_release.open();
        m_thread.join();
    }
    StuckDelivery(const StuckDelivery&) = delete;
    StuckDelivery& operator=(const StuckDelivery&) = delete;

private:
    Gate m_isInside;
    Gate m_release;
    std::thread m_thread;
};

class PluginClosingTest : public testing::Test {
protected:
    PluginClosingTest() {
        fake_platform::reset();
        fake_platform::recordNothing();
        EXPECT_EQ(chdir(UNIT_PLUGIN_ROOT), 0);
    }
    ~PluginClosingTest() override { fake_platform::reset(); }

    static std::unique_ptr<Plugin> loaded(const std::string& library) {
        auto plugin = std::make_unique<Plugin>();
        plugin->create(library);
        plugin->load();
        return plugin;
    }

    /// Unloads the plugin while another thread runs a full queue of its tasks. Expects that all of
    /// them have run when the library is closed.
    static void expectBacklogRunsBeforeTheLibraryIsClosed(Plugin& plugin,
                                                          const std::string& library) {
        std::atomic<int> ranWhileOpen = 0;
        Gate isInside;
        Gate mayGoOn;
        std::thread runner([&] {
            plugin.invokeTask([&] {
                isInside.open();
                mayGoOn.wait();
            });
        });
        isInside.wait();
        for (int i = 0; i < BACKLOG; ++i) {
            plugin.invokeTask([&] {
                std::this_thread::sleep_for(WORK);
                ranWhileOpen += isOpen(library) ? 1 : 0;
            });
        }
        mayGoOn.open();
        plugin.unload();
        EXPECT_FALSE(isOpen(library));
        runner.join();
        EXPECT_EQ(ranWhileOpen, BACKLOG);
    }
};

}  // namespace

TEST_F(PluginClosingTest, ABacklogThatStillRunsIsWaitedFor) {
    const auto plugin = loaded("ordinary.so");
    expectBacklogRunsBeforeTheLibraryIsClosed(*plugin, "ordinary.so");
}

TEST_F(PluginClosingTest, ADeliveryOnItsWayToThePluginIsWaitedFor) {
    const auto plugin = loaded("ordinary.so");
    Gate hasBegun;
    bool ranWhileOpen = false;
    std::thread delivering([&] {
        const EpochGuard guard;
        hasBegun.open();
        std::this_thread::sleep_for(WORK);  // as if in the callback of another plugin
        plugin->invokeTask([&] { ranWhileOpen = isOpen("ordinary.so"); });
    });
    hasBegun.wait();
    plugin->unload();
    delivering.join();
    EXPECT_TRUE(ranWhileOpen);
}

TEST_F(PluginClosingTest, APluginThatFailsLeavesOthersTheirTime) {
    Plugin stuckPlugin;
    const StuckDelivery stuck(stuckPlugin);
    const auto plugin = loaded("ordinary.so");
    EXPECT_THROW(loaded("init_returns_minus_3.so"), std::runtime_error);
    expectBacklogRunsBeforeTheLibraryIsClosed(*plugin, "ordinary.so");
}

TEST_F(PluginClosingTest, AStuckPluginLeavesOthersTheirTime) {
    const auto stuckPlugin = loaded("another.so");
    const StuckDelivery stuck(*stuckPlugin);
    const auto plugin = loaded("ordinary.so");
    const auto start = steady_clock::now();
    stuckPlugin->unload();
    EXPECT_GE(steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_FALSE(isOpen("another.so"));
    expectBacklogRunsBeforeTheLibraryIsClosed(*plugin, "ordinary.so");
}

TEST_F(PluginClosingTest, AStuckPluginHoldsUpNoOther) {
    const auto stuckPlugin = loaded("another.so");
    const StuckDelivery stuck(*stuckPlugin);
    const auto start = steady_clock::now();
    stuckPlugin->unload();
    for (int i = 0; i < 20; ++i) {
        loaded("ordinary.so")->unload();
    }
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(10));
}
