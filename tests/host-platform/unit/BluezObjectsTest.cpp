// Tests which callbacks are called when BlueZ's objects change, without a bus.
#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/host/bluez/bus/BluezObjects.h"
#include "platform/host/bluez/keys/KeyOperations.h"
#include "platform/host/bluez/reporters/Reporters.h"

namespace {

using namespace corvane::host;

const std::string ADAPTER(ADAPTER_INTERFACE);
const std::string DEVICE(DEVICE_INTERFACE);
const std::string BATTERY(BATTERY_INTERFACE);
constexpr const char* DEVICE_PATH = "/org/bluez/hci0/dev";

class BluezObjectsTest : public testing::Test {
protected:
    BluezObjectsTest() {
        bt_adapter_set_device_discovery_state_changed_cb(&onDiscovery, this);
        bt_hid_set_battery_status_received_cb(&onBattery, this);
        m_objects.addReporter(makeDiscoveryReporter());
        m_objects.addReporter(makeBatteryReporter());
        m_objects.addToSnapshot("/org/bluez/hci0", {{ADAPTER, {{"Discovering", true}}}});
        m_objects.finishSnapshot();
    }

    ~BluezObjectsTest() override {
        bt_adapter_unset_device_discovery_state_changed_cb();
        bt_hid_unset_battery_status_received_cb();
    }

    // Reads the address and the name, neither of which may be null.
    static void onDiscovery(int, bt_adapter_device_discovery_state_e,
                            bt_adapter_device_discovery_info_s* info, void* self) {
        auto& test = *static_cast<BluezObjectsTest*>(self);
        test.m_found.push_back(std::string(info->remote_address) + '/' + info->remote_name + '/' +
                               std::to_string(info->appearance) + '/' +
                               std::to_string(info->bt_class.major_service_class_mask) + '/' +
                               std::to_string(info->service_count));
        if (test.m_throws) {
            throw std::runtime_error("plugin");
        }
    }

    // Reads 18 bytes of the address, as a plugin may do even if the address is shorter.
    static void onBattery(bt_hid_battery_status_info_s* status, void* self) {
        char copy[18];
        std::memcpy(copy, status->address, sizeof copy);
        auto& test = *static_cast<BluezObjectsTest*>(self);
        test.m_batteries.push_back(std::string(copy) + '/' + std::to_string(status->status));
    }

    void addDevice(Properties more = {}) {
        more.emplace("Adapter", std::string("/org/bluez/hci0"));
        m_objects.add(DEVICE_PATH, {{DEVICE, more}});
    }

    BluezObjects m_objects;
    std::vector<std::string> m_found;
    std::vector<std::string> m_batteries;
    bool m_throws = false;
};

TEST_F(BluezObjectsTest, DeviceOfWhichNothingIsKnownHasEmptyTexts) {
    addDevice();
    EXPECT_EQ(m_found, std::vector<std::string>{"//0/0/0"});
}

TEST_F(BluezObjectsTest, WhatIsKnownIsInTheRecord) {
    addDevice({{"Address", std::string("A")},
               {"Alias", std::string("N")},
               {"Class", std::uint32_t{0x5a020c}},
               {"Appearance", std::uint16_t{962}},
               {"UUIDs", std::vector<std::string>{"a", "b"}}});
    EXPECT_EQ(m_found, std::vector<std::string>{"A/N/962/720/2"});
}

TEST_F(BluezObjectsTest, EndOfDiscoveryHasEmptyTexts) {
    m_objects.change("/org/bluez/hci0", ADAPTER, {{"Discovering", false}}, {});
    EXPECT_EQ(m_found, std::vector<std::string>{"//0/0/0"});
}

TEST_F(BluezObjectsTest, AddressOfABatteryCanBeReadInFull) {
    addDevice({{"Address", std::string("A")}});
    m_objects.add(DEVICE_PATH, {{BATTERY, {{"Percentage", std::uint8_t{7}}}}});
    EXPECT_EQ(m_batteries, std::vector<std::string>{"A/7"});
}

TEST_F(BluezObjectsTest, BatteryThatComesWithItsDeviceIsFound) {
    m_objects.add(DEVICE_PATH, {{DEVICE, {}}, {BATTERY, {{"Percentage", std::uint8_t{7}}}}});
    EXPECT_TRUE(m_batteries.empty());
}

TEST_F(BluezObjectsTest, AnInterfaceAddedAgainIsAChange) {
    addDevice();
    m_objects.add(DEVICE_PATH, {{BATTERY, {{"Percentage", std::uint8_t{7}}}}});
    m_objects.add(DEVICE_PATH, {{DEVICE, {}}, {BATTERY, {{"Percentage", std::uint8_t{7}}}}});
    m_objects.add(DEVICE_PATH, {{DEVICE, {}}, {BATTERY, {{"Percentage", std::uint8_t{8}}}}});
    EXPECT_EQ(m_batteries, (std::vector<std::string>{"/7", "/8"}));
}

TEST_F(BluezObjectsTest, AnExceptionStopsNoOtherReport) {
    m_throws = true;
    EXPECT_THROW(addDevice({{"Address", std::string("A")}}), std::runtime_error);
    EXPECT_EQ(m_objects.addressOf(DEVICE_PATH), "A");
    EXPECT_THROW(m_objects.removeAll(), std::runtime_error);  // reports the end of discovery
    EXPECT_EQ(m_objects.adapterPath(), "");
}

TEST_F(BluezObjectsTest, AddressLastsAsLongAsAnythingOfTheDevice) {
    addDevice({{"Address", std::string("A")}});
    m_objects.add(std::string(DEVICE_PATH) + "/fd0", {{"x", {}}});
    m_objects.remove(DEVICE_PATH, {DEVICE});
    EXPECT_EQ(m_objects.addressOf(DEVICE_PATH), "A");
    m_objects.remove(std::string(DEVICE_PATH) + "/fd0", {"x"});
    EXPECT_EQ(m_objects.addressOf(DEVICE_PATH), "");
}

TEST(KeyOperationsTest, KeysAreTurnedBackIntoOperations) {
    EXPECT_EQ(operationOfKey(KEY_SELECT), 0x00);
    EXPECT_EQ(operationOfKey(KEY_VOLUMEUP), 0x41);
    EXPECT_EQ(operationOfKey(KEY_PLAYCD), 0x44);
    EXPECT_EQ(operationOfKey(KEY_PREVIOUSSONG), 0x4c);
    EXPECT_FALSE(operationOfKey(KEY_LEFTSHIFT));
}

}  // namespace
