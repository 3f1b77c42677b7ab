// Which files of a directory are candidates for plugins, and their priorities.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <list>
#include <queue>
#include <string>
#include <utility>
#include <vector>

#include "daemon/src/FileManager.h"
#include "daemon/src/Plugin.h"
#include "daemon/src/PluginPriorityChecker.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/process/TemporaryDirectory.h"

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

/// Runs in a temporary directory; the path of the marker file is relative to it.
class PluginDiscoveryTest : public testing::Test {
protected:
    PluginDiscoveryTest() {
        fs::current_path(m_directory);
        fs::create_directory("plugins");
        fake_platform::reset();
    }
    ~PluginDiscoveryTest() override {
        fs::current_path("/");
        fake_platform::reset();
    }
    void file(const std::string& name) { std::ofstream(m_directory / name) << "content"; }
    std::list<std::string> find() { return FileManager().getFilesInDirectory("plugins/"); }

    TemporaryDirectory m_temporary;
    const fs::path m_directory = m_temporary.path();
};

}  // namespace

TEST_F(PluginDiscoveryTest, RegularFilesThatEndInSoAreCandidates) {
    file("plugins/libfoo.so");
    file("plugins/.so");
    file("plugins/libfoo.so.1");
    file("plugins/libfoo.SO");
    file("plugins/so");
    file("plugins/xso");
    file("libtarget");
    fs::create_directory("plugins/x.so");
    fs::create_symlink("../libtarget", "plugins/link.so");
    fs::create_symlink("nowhere", "plugins/dangling.so");
    fs::create_symlink("x.so", "plugins/directory.so");
    EXPECT_THAT(find(), UnorderedElementsAre("libfoo.so", ".so", "link.so"));
    EXPECT_EQ(fake_platform::count("FileManager.cpp: getFilesInDirectory("), 3);
}

TEST_F(PluginDiscoveryTest, TheListingIsTracedAndNamesEachCandidate) {
    file("plugins/libfoo.so");
    find();
    const std::string signature =
        "[std::__cxx11::list<std::__cxx11::basic_string<char> > "
        "FileManager::getFilesInDirectory(const std::string&)(#)]";
    EXPECT_THAT(fake_platform::transcript(),
                ElementsAre("D QVX log.h: ApiTracker(#) > IN >> " + signature,
                            "I QVX FileManager.cpp: getFilesInDirectory(#) > libfoo.so",
                            "D QVX log.h: ~ApiTracker(#) > OUT << " + signature));
}

TEST_F(PluginDiscoveryTest, AnEntryThatCannotBeExaminedHasItsErrorAndTheListingHasNone) {
    fs::create_symlink("nowhere", "plugins/dangling.so");
    const auto listing = FileManager::listDirectory("plugins/");
    ASSERT_TRUE(listing);
    EXPECT_EQ(listing->error, 0);
    const auto entry =
        std::ranges::find(listing->entries, "dangling.so", &FileManager::Entry::name);
    ASSERT_NE(entry, listing->entries.end());
    EXPECT_EQ(entry->candidacy, FileManager::Candidacy::Unreachable);
    EXPECT_EQ(entry->error, ENOENT);
}

TEST_F(PluginDiscoveryTest, AMissingDirectoryIsOneErrorLine) {
    EXPECT_THAT(FileManager().getFilesInDirectory("missing/"), IsEmpty());
    EXPECT_EQ(fake_platform::transcript()[1],
              "E QVX FileManager.cpp: getFilesInDirectory(#) > can not open directory, missing/");
}

TEST_F(PluginDiscoveryTest, TheProductTypeDecidesTheDonglesPriority) {
    const std::string dongle = "libZarnDongleDetectNotification.so";
    for (const auto& [type, priority] :
         std::vector<std::pair<int, int>>{{7, 10}, {8, 10}, {6, 5}, {9, 5}, {0, 5}, {-1, 5}}) {
        fake_platform::reset();
        fake_platform::setProductType(0, type);
        EXPECT_EQ(PluginPriorityChecker::getPriority(dongle), priority) << type;
        EXPECT_THAT(fake_platform::transcript(),
                    ElementsAre("call system_info_get_custom_int "
                                "com.ondrix/featureconf/product.zarn_product_type",
                                "I QVX PluginPriorityChecker.h: isZarnReadySupport(#) > product "
                                "type : " +
                                    std::to_string(type)));
    }
}

TEST_F(PluginDiscoveryTest, AFailedProductTypeQueryIsLoggedWithItsKey) {
    fake_platform::setProductType(-1, 8);
    EXPECT_EQ(PluginPriorityChecker::getPriority("libZarnDongleDetectNotification.so"), 5);
    EXPECT_THAT(
        fake_platform::transcript(),
        ElementsAre(
            "call system_info_get_custom_int com.ondrix/featureconf/product.zarn_product_type",
            "E QVX PluginPriorityChecker.h: isZarnReadySupport(#) > "
            "com.ondrix/featureconf/product.zarn_product_type",
            "I QVX PluginPriorityChecker.h: isZarnReadySupport(#) > product type : 0"));
}

TEST_F(PluginDiscoveryTest, TheMarkerFileDecidesTheLiteApplicationsPriority) {
    EXPECT_EQ(PluginPriorityChecker::getPriority("libbtapp-lite.so"), 7);
    file("marker");
    EXPECT_EQ(PluginPriorityChecker::getPriority("libbtapp-lite.so"), 9);
}

TEST_F(PluginDiscoveryTest, OtherNamesAreComparedWholeAndAskThePlatformNothing) {
    fake_platform::setProductType(0, 8);
    EXPECT_EQ(PluginPriorityChecker::getPriority("libbleapp.so"), 8);
    for (const char* name : {"libfoo.so", "LIBBLEAPP.so", "libbleapp.so.1", "xlibbleapp.so", "",
                             "libZarnDongleDetectNotification.so "}) {
        EXPECT_EQ(PluginPriorityChecker::getPriority(name), 5) << name;
    }
    EXPECT_THAT(fake_platform::calls(), IsEmpty());
}

TEST_F(PluginDiscoveryTest, EqualPrioritiesLeaveTheQueueInTheHeapsOrder) {
    // Four plugins leave the queue in the order A, C, B, D, three in the order A, B, C.
    for (const std::size_t count : {3U, 4U}) {
        std::vector<Plugin> plugins(count);
        std::priority_queue<Plugin*, std::vector<Plugin*>, Plugin::Compare> queue;
        for (Plugin& plugin : plugins) {
            plugin.create("libsame.so");
            queue.push(&plugin);
        }
        std::string order;
        for (; !queue.empty(); queue.pop()) {
            order += static_cast<char>('A' + (queue.top() - plugins.data()));
        }
        EXPECT_EQ(order, count == 3 ? "ABC" : "ACBD");
    }
}
