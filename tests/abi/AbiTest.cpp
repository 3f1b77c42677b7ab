// Plugins built for a frozen release keep working: the operations have the same vtable slots and
// the same effect, and the arguments of events have the same layout.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "daemon/src/broker/RequestBroker.h"
#include "tests/abi/FrozenPlugin.h"
#include "tests/abi/OperationTable.h"
#include "tests/support/Events.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Invokers.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// Returns the names of the folders v* beside this file. Each folder is a release.
std::vector<std::string> frozenReleases() {
    std::vector<std::string> releases;
    for (const auto& entry : std::filesystem::directory_iterator(CORVANE_ABI_DIR)) {
        const std::string name = entry.path().filename();
        if (entry.is_directory() && name.starts_with("v")) {
            releases.push_back(name);
        }
    }
    std::sort(releases.begin(), releases.end());
    return releases;
}

std::vector<std::string> linesOf(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("can't read " + path);
    }
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

struct Listener : FrozenListener {
    Listener() : FrozenListener{&take} {}
    static void take(FrozenListener* self, const char* event, std::size_t length) {
        static_cast<Listener*>(self)->events.emplace_back(event, length);
    }
    std::vector<std::string> events;
};

const Event* eventOfSubscribe(const std::string& name) {
    for (const auto& event : allEvents()) {
        if (event->subscribeName == name) {
            return event;
        }
    }
    return nullptr;
}

class FrozenReleaseTest : public testing::TestWithParam<std::string> {
protected:
    FrozenReleaseTest() {
        fake_platform::reset();
        const std::string path =
            std::string(CORVANE_ABI_PLUGIN_DIR) + "/libabi-plugin-" + GetParam() + ".so";
        m_library.reset(dlopen(path.c_str(), RTLD_NOW));
        if (!m_library) {
            throw std::runtime_error(dlerror());
        }
        int count = 0;
        const auto entry =
            reinterpret_cast<FrozenOperations>(dlsym(m_library.get(), FROZEN_OPERATIONS_SYMBOL));
        const FrozenOperation* first = entry(&count);
        m_operations.assign(first, first + count);
    }
    ~FrozenReleaseTest() override {
        for (const auto& event : allEvents()) {
            event->unsubscribe(m_broker);
        }
        fake_platform::reset();
    }

    std::vector<std::string> frozenTable() const {
        return linesOf(std::string(CORVANE_ABI_DIR) + "/" + GetParam() + "/operations.txt");
    }
    int call(const FrozenOperation& operation) {
        return operation.call(static_cast<IRequestBroker*>(&m_broker), &m_listener);
    }

    struct LibraryCloser {
        void operator()(void* handle) const { dlclose(handle); }
    };
    std::unique_ptr<void, LibraryCloser> m_library;
    std::vector<FrozenOperation> m_operations;
    DirectTaskInvoker m_invoker;
    RequestBroker m_broker{&m_invoker};
    Listener m_listener;
};

}  // namespace

TEST(FrozenReleasesTest, ThereIsOne) {
    EXPECT_FALSE(frozenReleases().empty()) << "in " << CORVANE_ABI_DIR;
}

TEST(BrokerHeaderTest, TellsHowManyOperationsThereAre) {
    EXPECT_THAT(operationTable(), SizeIs(corvaneOperationCount));
}

TEST_P(FrozenReleaseTest, ItsOperationsKeepTheirSlotsNamesAndTypes) {
    const std::vector<std::string> was = frozenTable();
    ASSERT_EQ(was.size(), m_operations.size());
    const std::string moved = movedOperations(was, operationTable());
    EXPECT_TRUE(moved.empty()) << "The plugin ABI is frozen; new operations stand at the end.\n"
                               << moved;
}

TEST_P(FrozenReleaseTest, ItsPluginReachesEveryOperation) {
    ASSERT_GE(operationTable().size(), m_operations.size());
    int slot = 0;
    for (const FrozenOperation& operation : m_operations) {
        SCOPED_TRACE("slot " + std::to_string(slot++) + ", " + operation.name);
        fake_platform::reset();
        EXPECT_EQ(call(operation), 0);
        EXPECT_EQ(fake_platform::count(std::string("IN >> [virtual int RequestBroker::") +
                                       operation.name + "("),
                  1);
        if (operation.platformCall != nullptr) {
            EXPECT_THAT(fake_platform::calls(), ElementsAre(operation.platformCall));
        }
    }
    EXPECT_THAT(m_listener.events, ElementsAre("own work"));
}

TEST_P(FrozenReleaseTest, ItsPluginReadsTheArgumentsOfEveryEvent) {
    ASSERT_GE(operationTable().size(), m_operations.size());
    for (std::size_t slot = 0; slot + 1 < m_operations.size(); slot += 2) {
        const FrozenOperation& subscribe = m_operations[slot];
        const Event* event = eventOfSubscribe(subscribe.name);
        ASSERT_NE(event, nullptr) << subscribe.name << " is gone";
        call(subscribe);
        const std::string sent = event->deliver();
        EXPECT_THAT(m_listener.events, ElementsAre(sent)) << subscribe.name;
        m_listener.events.clear();
        call(m_operations[slot + 1]);
        event->deliver();
        EXPECT_THAT(m_listener.events, IsEmpty()) << m_operations[slot + 1].name;
    }
}

INSTANTIATE_TEST_SUITE_P(Abi, FrozenReleaseTest, testing::ValuesIn(frozenReleases()),
                         [](const auto& release) {
                             std::string name = release.param;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });
