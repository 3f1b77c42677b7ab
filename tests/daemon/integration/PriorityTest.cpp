// The load order of the plugins whose names the daemon knows, and the platform queries that the
// daemon makes to determine it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

constexpr const char* DONGLE = "libZarnDongleDetectNotification.so";
constexpr const char* LITE = "libbtapp-lite.so";
constexpr const char* BLE = "libbleapp.so";

class DaemonPriorityTest : public testing::Test {
protected:
    std::vector<std::string> loadWithPriorities() {
        m_log = m_sandbox.startAndTerminate().log;
        return m_log.behind("load plugin : ");
    }
    std::string platformQuestions() const {
        return m_log.ofTags({"PLATFORM"}).from("bt_audio_initialize").texts();
    }

    Sandbox m_sandbox;
    Log m_log;
};

constexpr const char* NO_QUESTIONS =
    "bt_audio_initialize\n"
    "ecore_main_loop_begin\n"
    "ecore_main_loop_begin returned\n"
    "bt_product_deinit\n"
    "bt_audio_deinitialize\n"
    "ecore_shutdown\n";

TEST_F(DaemonPriorityTest, WithMarkerAndDongleTheDongleComesFirstThenTheMarkedOne) {
    for (const char* name : {BLE, LITE, DONGLE, "libfoo.so"}) {
        m_sandbox.addPlugin(name);
    }
    m_sandbox.addMarkerFile();
    m_sandbox.setProductType(8);
    EXPECT_THAT(loadWithPriorities(),
                ElementsAre("libZarnDongleDetectNotification.so{p:10]}", "libbtapp-lite.so{p:9]}",
                            "libbleapp.so{p:8]}", "libfoo.so{p:5]}"));
}

TEST_F(DaemonPriorityTest, WithNeitherTheDongleIsAnOrdinaryPlugin) {
    for (const char* name : {BLE, LITE, DONGLE, "libfoo.so"}) {
        m_sandbox.addPlugin(name);
    }
    m_sandbox.setProductType(3);
    const auto order = loadWithPriorities();
    ASSERT_EQ(order.size(), 4U);
    EXPECT_EQ(order[0], "libbleapp.so{p:8]}");
    EXPECT_EQ(order[1], "libbtapp-lite.so{p:7]}");
    EXPECT_THAT(
        std::vector(order.begin() + 2, order.end()),
        UnorderedElementsAre("libZarnDongleDetectNotification.so{p:5]}", "libfoo.so{p:5]}"));
}

TEST_F(DaemonPriorityTest, ThePlatformIsAskedOnceForEachNameThatDependsOnIt) {
    m_sandbox.addPlugin(LITE);
    loadWithPriorities();
    EXPECT_EQ(m_log.count("access marker"), 1U);
    EXPECT_FALSE(m_log.contains("product type : "));
    EXPECT_FALSE(m_log.contains("system_info_get_custom_int"));
}

TEST_F(DaemonPriorityTest, TheMarkerIsNotAskedForWithoutItsPlugin) {
    m_sandbox.addPlugin(DONGLE);
    m_sandbox.setProductType(7);
    loadWithPriorities();
    EXPECT_EQ(m_log.count("system_info_get_custom_int"), 1U);
    EXPECT_FALSE(m_log.contains("access marker"));
}

TEST_F(DaemonPriorityTest, NamesMustMatchWhollyAndInCase) {
    m_sandbox.addMarkerFile();
    m_sandbox.setProductType(8);
    m_sandbox.addPlugin("LIBBLEAPP.so");
    m_sandbox.addPlugin("xlibbleapp.so");
    m_sandbox.addPlugin("libbtapp-lite.so.so");
    m_sandbox.addPlugin("libZarnDongledetectNotification.so");
    m_sandbox.addPlugin("libbleapp.so.1");
    EXPECT_THAT(loadWithPriorities(),
                UnorderedElementsAre("LIBBLEAPP.so{p:5]}", "xlibbleapp.so{p:5]}",
                                     "libbtapp-lite.so.so{p:5]}",
                                     "libZarnDongledetectNotification.so{p:5]}"));
    EXPECT_EQ(platformQuestions(), NO_QUESTIONS);
}

TEST_F(DaemonPriorityTest, AFailingQueryIsAnErrorLineWithTheKeyAndTypeZero) {
    m_sandbox.addPlugin(DONGLE);
    m_sandbox.setSystemInformation("another.key = 8\n");
    EXPECT_THAT(loadWithPriorities(), ElementsAre("libZarnDongleDetectNotification.so{p:5]}"));
    EXPECT_EQ(
        m_log.from("IN >> [void Plugin::create(").upTo("OUT << [void Plugin::create(").transcript(),
        "D QVX: log.h: ApiTracker(#) > IN >> [void Plugin::create(const std::string&)(#)]\n"
        "I PLATFORM: system_info_get_custom_int\n"
        "E QVX: PluginPriorityChecker.h: isZarnReadySupport(#) > "
        "com.ondrix/featureconf/product.zarn_product_type\n"
        "I QVX: PluginPriorityChecker.h: isZarnReadySupport(#) > product type : 0\n"
        "D QVX: log.h: ~ApiTracker(#) > OUT << "
        "[void Plugin::create(const std::string&)(#)]\n");
}

struct ProductType {
    int type;
    const char* line;

    friend std::ostream& operator<<(std::ostream& out, const ProductType& product) {
        return out << product.type;
    }
};

class DaemonProductTypeTest : public DaemonPriorityTest,
                              public testing::WithParamInterface<ProductType> {};

TEST_P(DaemonProductTypeTest, DecidesThePriorityOfTheDonglesPlugin) {
    m_sandbox.addPlugin(DONGLE);
    m_sandbox.setProductType(GetParam().type);
    EXPECT_THAT(loadWithPriorities(), ElementsAre(std::string(DONGLE) + GetParam().line));
    EXPECT_THAT(m_log.ofPriority("I").behind("isZarnReadySupport(").size(), 1U);
    EXPECT_THAT(m_log.behind("product type : "), ElementsAre(std::to_string(GetParam().type)));
    EXPECT_THAT(m_log.ofPriority("E").lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Types, DaemonProductTypeTest,
                         testing::Values(ProductType{7, "{p:10]}"}, ProductType{8, "{p:10]}"},
                                         ProductType{6, "{p:5]}"}, ProductType{9, "{p:5]}"},
                                         ProductType{0, "{p:5]}"}, ProductType{-1, "{p:5]}"},
                                         ProductType{INT_MIN, "{p:5]}"},
                                         ProductType{INT_MAX, "{p:5]}"}),
                         [](const auto& tested) {
                             const auto text = std::to_string(tested.param.type);
                             return text.front() == '-' ? "Minus" + text.substr(1) : text;
                         });

}  // namespace
