// Edge cases of the record copies that plugins receive.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "daemon/src/Callback/BluetoothCallback.h"
#include "daemon/src/Callback/SoundManagerCallback.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Invokers.h"
#include "tests/support/SampleArguments.h"

namespace {

/// Subscribes to a source and runs `check` on each record it receives.
template <typename Source, typename Record>
class Subscriber {
public:
    using Check = std::function<void(Record*)>;

    explicit Subscriber(
        Source& source, Check check = [](Record*) {})
        : m_check(std::move(check)) {
        source.add(&m_invoker, callback(static_cast<typename Source::Function>(nullptr)), this);
    }
    QueueTaskInvoker& invoker() { return m_invoker; }

private:
    template <typename... Before>
    static auto callback(void (*)(Before...)) -> void (*)(Before...) {
        return [](Before... all) {
            const auto arguments = std::tie(all...);
            constexpr std::size_t last = sizeof...(Before) - 1;
            auto* self = static_cast<Subscriber*>(std::get<last>(arguments));
            self->m_check(std::get<last - 1>(arguments));
        };
    }

    Check m_check;
    QueueTaskInvoker m_invoker;
};

class RecordCopyTest : public testing::Test {
protected:
    ~RecordCopyTest() override { fake_platform::reset(); }
    SampleBuffers m_buffers;
};

using DeviceSubscriber = Subscriber<BtDeviceBondCreatedCb, bt_device_info_s>;

}  // namespace

TEST_F(RecordCopyTest, ANullDeviceReachesThePluginAsNull) {
    BtDeviceBondCreatedCb bonded;
    BtHidBrekSwitchConnectionStateChangedCb brekSwitch;
    BtHidSmartRcConnectionCb smartRc;
    int nulls = 0;
    const auto count = [&nulls](bt_device_info_s* info) { nulls += info == nullptr; };
    DeviceSubscriber a(bonded, count);
    Subscriber<BtHidBrekSwitchConnectionStateChangedCb, bt_device_info_s> b(brekSwitch, count);
    Subscriber<BtHidSmartRcConnectionCb, bt_device_info_s> c(smartRc, count);
    bonded.onCallback(0, nullptr);
    brekSwitch.onCallback(true, nullptr);
    smartRc.onCallback(false, nullptr);
    a.invoker().runAll();
    b.invoker().runAll();
    c.invoker().runAll();
    EXPECT_EQ(nulls, 3);
}

TEST_F(RecordCopyTest, ADeviceWithNothingButNullPointersIsCopied) {
    bt_device_info_s info{};
    const auto copy = DeviceInfoCopy::copy(&info);
    EXPECT_EQ(describe(copy.get()), "{null;null;{0;0;0;};0:null;0;0;0;0:null;}");
}

TEST_F(RecordCopyTest, AServiceCountWithoutAnArrayIsKeptWithoutAnArray) {
    bt_device_info_s info{};
    info.service_count = 3;
    const auto copy = DeviceInfoCopy::copy(&info);
    EXPECT_EQ(copy->service_count, 3);
    EXPECT_EQ(copy->service_uuid, nullptr);
}

TEST_F(RecordCopyTest, AnArrayWithoutACountIsNotCopied) {
    bt_device_info_s info{};
    info.service_uuid = m_buffers.texts({"1101"});
    for (const int count : {0, -1}) {
        info.service_count = count;
        const auto copy = DeviceInfoCopy::copy(&info);
        EXPECT_EQ(copy->service_count, count);
        EXPECT_EQ(copy->service_uuid, nullptr);
    }
}

TEST_F(RecordCopyTest, ANullElementOfADevicesServicesStaysNull) {
    char** services = m_buffers.texts({"1101", "110b"});
    services[0] = nullptr;
    bt_device_info_s info{};
    info.service_uuid = services;
    info.service_count = 2;
    const auto copy = DeviceInfoCopy::copy(&info);
    EXPECT_EQ(copy->service_uuid[0], nullptr);
    EXPECT_STREQ(copy->service_uuid[1], "110b");
}

TEST_F(RecordCopyTest, ManufacturerDataIsExactlyItsLength) {
    bt_device_info_s info{};
    info.manufacturer_data = m_buffers.text("1234567");
    EXPECT_EQ(DeviceInfoCopy::copy(&info)->manufacturer_data, nullptr);
    info.manufacturer_data_len = 4;
    const auto copy = DeviceInfoCopy::copy(&info);
    EXPECT_EQ(copy->manufacturer_data_len, 4);
    EXPECT_EQ(std::string(copy->manufacturer_data, 4), "1234");
    info.manufacturer_data = nullptr;
    EXPECT_EQ(DeviceInfoCopy::copy(&info)->manufacturer_data, nullptr);
    EXPECT_EQ(DeviceInfoCopy::copy(&info)->manufacturer_data_len, 4);
}

TEST_F(RecordCopyTest, ManufacturerDataOfLengthZeroArrivesWithLengthZero) {
    BtDeviceBondCreatedCb bonded;
    BtAdapterDeviceDiscoveryStateChangedCb found;
    std::vector<std::pair<int, char*>> received;
    const auto note = [&received](const auto* copy) {
        received.emplace_back(copy->manufacturer_data_len, copy->manufacturer_data);
    };
    DeviceSubscriber a(bonded, note);
    Subscriber<BtAdapterDeviceDiscoveryStateChangedCb, bt_adapter_device_discovery_info_s> b(found,
                                                                                             note);
    auto* const device = sample<bt_device_info_s*>(m_buffers, 0);
    device->manufacturer_data_len = 0;
    auto* const discovery = sample<bt_adapter_device_discovery_info_s*>(m_buffers, 0);
    discovery->manufacturer_data_len = 0;
    bonded.onCallback(0, device);
    found.onCallback(0, BT_ADAPTER_DEVICE_DISCOVERY_FOUND, discovery);
    a.invoker().runAll();
    b.invoker().runAll();
    EXPECT_THAT(received,
                testing::ElementsAre(testing::Pair(0, nullptr), testing::Pair(0, nullptr)));
}

TEST_F(RecordCopyTest, ADiscoveredDevicesMaskIsItsMajorClassAndItsAppearanceIsLost) {
    BtAdapterDeviceDiscoveryStateChangedCb source;
    bt_adapter_device_discovery_info_s* info =
        sample<bt_adapter_device_discovery_info_s*>(m_buffers, 0);
    info->bt_class = {1, 2, 3};
    info->appearance = 5;
    bool checked = false;
    Subscriber<BtAdapterDeviceDiscoveryStateChangedCb, bt_adapter_device_discovery_info_s>
        subscriber(source, [&checked](bt_adapter_device_discovery_info_s* received) {
            EXPECT_EQ(received->bt_class.major_device_class, 1);
            EXPECT_EQ(received->bt_class.minor_device_class, 2);
            EXPECT_EQ(received->bt_class.major_service_class_mask, 1);
            EXPECT_EQ(received->appearance, 0);
            checked = true;
        });
    fake_platform::reset();
    source.onCallback(0, BT_ADAPTER_DEVICE_DISCOVERY_FOUND, info);
    EXPECT_EQ(fake_platform::count(
                  "[std::shared_ptr<bt_adapter_device_discovery_info_s> "
                  "BtAdapterDeviceDiscoveryStateChangedCb::copy(bt_adapter_device_discovery_info_s"
                  "*)("),
              2);
    subscriber.invoker().runAll();
    EXPECT_TRUE(checked);
}

TEST_F(RecordCopyTest, ADiscoveryRecordWithoutServicesOrDataHasNullBuffers) {
    BtAdapterDeviceDiscoveryStateChangedCb source;
    bt_adapter_device_discovery_info_s info{};
    info.remote_address = m_buffers.text("");
    info.remote_name = m_buffers.text("");
    info.service_uuid = m_buffers.texts({"1101"});
    info.manufacturer_data = m_buffers.text("data");
    bool checked = false;
    Subscriber<BtAdapterDeviceDiscoveryStateChangedCb, bt_adapter_device_discovery_info_s>
        subscriber(source, [&checked](bt_adapter_device_discovery_info_s* received) {
            EXPECT_EQ(received->service_uuid, nullptr);
            EXPECT_EQ(received->manufacturer_data, nullptr);
            EXPECT_STREQ(received->remote_name, "");
            checked = true;
        });
    source.onCallback(0, BT_ADAPTER_DEVICE_DISCOVERY_FINISHED, &info);
    subscriber.invoker().runAll();
    EXPECT_TRUE(checked);
}

TEST_F(RecordCopyTest, ABatteryAddressIsCutToTheLengthOfAnAddress) {
    const std::pair<std::string, std::string> cases[] = {
        {"AA:BB:CC:DD:EE:FF", "AA:BB:CC:DD:EE:FF"},
        {"AA:BB:CC:DD:EE:FF and more", "AA:BB:CC:DD:EE:FF"},
        {std::string("short\0with a long tail", 22), "short"},
    };
    for (const auto& [sent, expected] : cases) {
        BtHidBatteryStatusReceivedCb source;
        bt_hid_battery_status_info_s status{7, m_buffers.text(sent)};
        std::string received;
        Subscriber<BtHidBatteryStatusReceivedCb, bt_hid_battery_status_info_s> subscriber(
            source, [&received](bt_hid_battery_status_info_s* copy) { received = copy->address; });
        fake_platform::reset();
        source.onCallback(&status);
        EXPECT_EQ(fake_platform::count("BluetoothCallback.h: copy("), 1);
        EXPECT_EQ(fake_platform::count(") > " + expected + ", 7"), 1);
        subscriber.invoker().runAll();
        EXPECT_EQ(received, expected);
    }
}

TEST_F(RecordCopyTest, SocketDataOfNoBytesHasANullPointer) {
    BtSocketDataReceivedCb source;
    char byte = 'x';
    bt_socket_received_data_s data{3, 0, &byte};
    bool checked = false;
    Subscriber<BtSocketDataReceivedCb, bt_socket_received_data_s> subscriber(
        source, [&checked](bt_socket_received_data_s* copy) {
            EXPECT_EQ(copy->socket_fd, 3);
            EXPECT_EQ(copy->data_size, 0);
            EXPECT_EQ(copy->data, nullptr);
            checked = true;
        });
    source.onCallback(&data);
    subscriber.invoker().runAll();
    EXPECT_TRUE(checked);
}

TEST_F(RecordCopyTest, SubscribersOfOneEventShareNothing) {
    BtDeviceServiceSearchedCb source;
    std::vector<bt_device_sdp_info_s> seen;
    const auto overwrite = [&seen](bt_device_sdp_info_s* copy) {
        EXPECT_STREQ(copy->remote_address, "AA:BB:CC:DD:EE:04");
        EXPECT_STREQ(copy->service_uuid[0], "1101");
        seen.push_back(*copy);
        copy->remote_address[0] = '#';
        copy->service_uuid[0][0] = '#';
    };
    Subscriber<BtDeviceServiceSearchedCb, bt_device_sdp_info_s> a(source, overwrite);
    Subscriber<BtDeviceServiceSearchedCb, bt_device_sdp_info_s> b(source, overwrite);
    source.onCallback(0, sample<bt_device_sdp_info_s*>(m_buffers, 0));
    a.invoker().runAll();
    a.invoker().tasks.clear();
    b.invoker().runAll();
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_NE(seen[0].remote_address, seen[1].remote_address);
}

TEST_F(RecordCopyTest, ADeviceThatOneSubscriberChangesReachesTheOtherAsItWas) {
    BtDeviceBondCreatedCb source;
    std::string received;
    DeviceSubscriber a(source, [](bt_device_info_s* copy) {
        copy->remote_name[0] = '#';
        copy->service_uuid[0][0] = '#';
        copy->bt_class.major_device_class = 0;
        copy->is_bonded = !copy->is_bonded;
        copy->manufacturer_data[0] = '#';
    });
    DeviceSubscriber b(source, [&received](bt_device_info_s* copy) { received = describe(copy); });
    auto* const info = sample<bt_device_info_s*>(m_buffers, 0);
    source.onCallback(0, info);
    a.invoker().runAll();
    b.invoker().runAll();
    EXPECT_EQ(received, describe(info));
}

TEST_F(RecordCopyTest, ASdpRecordWithoutServicesHasANullArray) {
    BtDeviceServiceSearchedCb source;
    bt_device_sdp_info_s info{m_buffers.text("AA"), nullptr, 0};
    bool checked = false;
    Subscriber<BtDeviceServiceSearchedCb, bt_device_sdp_info_s> subscriber(
        source, [&checked](bt_device_sdp_info_s* copy) {
            checked = copy->service_uuid == nullptr && copy->service_count == 0;
        });
    source.onCallback(0, &info);
    subscriber.invoker().runAll();
    EXPECT_TRUE(checked);
}

TEST_F(RecordCopyTest, ARecordIsReleasedWithItsTask) {
    // Under AddressSanitizer a record that outlives its task is reported as a leak.
    BtDeviceBondCreatedCb source;
    DeviceSubscriber subscriber(source);
    source.onCallback(0, sample<bt_device_info_s*>(m_buffers, 0));
    subscriber.invoker().tasks.clear();
}

TEST_F(RecordCopyTest, ANullStringFromThePlatformIsALogicError) {
    BtAdapterNameChangedCb source;
    source.registerCallback();
    EXPECT_THROW(
        fake_platform::deliver("bt_adapter_set_name_changed_cb", static_cast<char*>(nullptr)),
        std::logic_error);
}

TEST_F(RecordCopyTest, APluginMayChangeTheStringItIsLent) {
    BtAdapterNameChangedCb source;
    DirectTaskInvoker invoker;
    std::string received;
    const auto callback = [](char* name, void* userData) {
        name[0] = 'N';
        *static_cast<std::string*>(userData) = name;
    };
    source.add(&invoker, callback, &received);
    source.onCallback("name");
    EXPECT_EQ(received, "Name");
}

TEST_F(RecordCopyTest, TheFeaturesAndTheConnectionAreLoggedBeforeThePluginIsCalled) {
    BtAvrcpRemoteFeaturesCb features;
    BtDeviceConnectionStateChangedCb connection;
    int checks = 0;
    Subscriber<BtAvrcpRemoteFeaturesCb, bt_avrcp_remote_features_s> a(
        features, [&checks](bt_avrcp_remote_features_s*) {
            EXPECT_EQ(fake_platform::count(") > remote addr : "), 1);
            ++checks;
        });
    Subscriber<BtDeviceConnectionStateChangedCb, bt_device_connection_info_s> b(
        connection, [&checks](bt_device_connection_info_s*) {
            EXPECT_EQ(fake_platform::count(") > addr : "), 1);
            ++checks;
        });
    features.onCallback(sample<bt_avrcp_remote_features_s*>(m_buffers, 0));
    connection.onCallback(true, sample<bt_device_connection_info_s*>(m_buffers, 1));
    EXPECT_EQ(fake_platform::count(" addr : "), 0);
    a.invoker().runAll();
    b.invoker().runAll();
    EXPECT_EQ(checks, 2);
}

TEST_F(RecordCopyTest, TheFeaturesAreLoggedOnceForEachOfTwoSubscribers) {
    BtAvrcpRemoteFeaturesCb source;
    using FeaturesSubscriber = Subscriber<BtAvrcpRemoteFeaturesCb, bt_avrcp_remote_features_s>;
    FeaturesSubscriber a(source);
    FeaturesSubscriber b(source);
    source.onCallback(sample<bt_avrcp_remote_features_s*>(m_buffers, 0));
    const std::string line =
        ") > remote addr : AA:BB:CC:DD:EE:05, service name : service, provider name : provider, "
        "feature : 9";
    EXPECT_EQ(fake_platform::count(line), 0);
    b.invoker().runAll();
    EXPECT_EQ(fake_platform::count(line), 1);
    a.invoker().runAll();
    EXPECT_EQ(fake_platform::count(line), 2);
}

TEST_F(RecordCopyTest, ADestroyedSourceHasUnsetItsCallback) {
    { SoundManagerSpeakerChangedCb neverRegistered; }
    EXPECT_EQ(fake_platform::slot("sound_manager_set_speaker_changed_cb").unsets, 1);
}
