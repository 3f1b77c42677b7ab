// Fuzzes the content of the platform's records. A plugin must receive a deep copy: the platform's
// record and the event source are destroyed before the plugin reads the copy.
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "daemon/src/Callback/BluetoothCallback.h"
#include "tests/fuzz/Input.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/SampleArguments.h"

namespace {

/// A plugin's callback. It writes the received record, its last argument before the user data, as
/// text into the string to which the user data points.
template <typename Function>
struct Plugin;
template <typename... All>
struct Plugin<void (*)(All...)> {
    static void receive(All... all) {
        const auto arguments = std::tie(all...);
        constexpr std::size_t last = sizeof...(All) - 1;
        *static_cast<std::string*>(std::get<last>(arguments)) =
            describe(std::get<last - 1>(arguments));
    }
};

/// Delivers an event of `Source` twice. Destroys the second task without running it unless
/// `runsBoth`. `expected` is the record that the plugin must receive, as text.
template <typename Source, typename... Args>
void deliver(std::unique_ptr<SampleBuffers> buffers, const std::string& expected, bool runsBoth,
             Args... args) {
    using Function = typename Source::Function;
    std::string received;
    std::string receivedAgain;
    auto source = std::make_unique<Source>();
    auto task = [&](std::string& text) {
        auto& base = static_cast<CallbackImpl<Function, Args...>&>(*source);
        return base.getInvokingTask(&Plugin<Function>::receive, args..., &text);
    };
    std::function<void()> first = task(received);
    const std::function<void()> second = task(receivedAgain);
    buffers.reset();
    source.reset();
    first();
    REQUIRE(received == expected);
    first = nullptr;
    if (runsBoth) {
        second();
        REQUIRE(receivedAgain == expected);
    }
}

class RecordInput {
public:
    explicit RecordInput(Input& input) : m_input(input) {}

    char* text() { return m_buffers->text(m_input.text()); }

    char* textOrNull() { return m_input.flag() ? nullptr : text(); }

    /// Reads an array of `count` strings, or of one string if `count` isn't positive.
    char** texts(int count, bool mayBeNull) {
        std::vector<std::string> texts(static_cast<std::size_t>(count > 0 ? count : 1));
        std::vector<bool> nulls;
        for (auto& text : texts) {
            nulls.push_back(mayBeNull && m_input.flag());
            text = m_input.text();
        }
        char** array = m_buffers->texts(texts);
        for (std::size_t i = 0; i < nulls.size(); ++i) {
            array[i] = nulls[i] ? nullptr : array[i];
        }
        return array;
    }

    /// Reads a buffer of exactly `length` bytes, so that AddressSanitizer reports a read after
    /// them.
    char* bytes(int length) {
        auto bytes = m_input.bytes();
        bytes.resize(static_cast<std::size_t>(length > 1 ? length - 1 : 0));
        return m_buffers->text(bytes);
    }

    /// Reads a number from -2 to 29.
    int count() { return static_cast<int>(m_input.upTo(31)) - 2; }
    int number() { return m_input.number<int>(); }
    bool flag() { return m_input.flag(); }
    bt_class_s deviceClass() { return {number(), number(), number()}; }

    template <typename Record>
    Record* record() {
        return m_buffers->record<Record>();
    }

    std::unique_ptr<SampleBuffers> takeBuffers() { return std::move(m_buffers); }

private:
    Input& m_input;
    std::unique_ptr<SampleBuffers> m_buffers = std::make_unique<SampleBuffers>();
};

template <typename Source, typename... Before>
void device(RecordInput input, Before... before) {
    if (input.flag()) {
        deliver<Source>(input.takeBuffers(), "null", input.flag(), before...,
                        static_cast<bt_device_info_s*>(nullptr));
        return;
    }
    auto* record = input.record<bt_device_info_s>();
    record->remote_address = input.textOrNull();
    record->remote_name = input.textOrNull();
    record->bt_class = input.deviceClass();
    record->service_count = input.count();
    record->service_uuid = input.flag() ? nullptr : input.texts(record->service_count, true);
    record->is_bonded = input.flag();
    record->is_connected = input.flag();
    record->is_authorized = input.flag();
    record->manufacturer_data_len = input.count();
    record->manufacturer_data = input.flag() ? nullptr : input.bytes(record->manufacturer_data_len);
    bt_device_info_s expected = *record;
    if (expected.service_count <= 0) {
        expected.service_uuid = nullptr;
    }
    if (expected.manufacturer_data_len <= 0) {
        expected.manufacturer_data = nullptr;
    }
    const auto text = describe(&expected);
    deliver<Source>(input.takeBuffers(), text, input.flag(), before..., record);
}

void discovery(RecordInput input) {
    auto* record = input.record<bt_adapter_device_discovery_info_s>();
    record->remote_address = input.text();
    record->remote_name = input.text();
    record->bt_class = input.deviceClass();
    record->rssi = input.number();
    record->is_bonded = input.flag();
    record->service_count = input.count();
    record->service_uuid = input.texts(record->service_count, false);
    record->appearance = input.number();
    record->manufacturer_data_len = input.count();
    record->manufacturer_data = input.bytes(record->manufacturer_data_len);
    bt_adapter_device_discovery_info_s expected = *record;
    expected.bt_class.major_service_class_mask = record->bt_class.major_device_class;
    expected.appearance = 0;
    if (expected.service_count <= 0) {
        expected.service_uuid = nullptr;
    }
    if (expected.manufacturer_data_len <= 0) {
        expected.manufacturer_data = nullptr;
    }
    const auto text = describe(&expected);
    deliver<BtAdapterDeviceDiscoveryStateChangedCb>(input.takeBuffers(), text, input.flag(), 0,
                                                    BT_ADAPTER_DEVICE_DISCOVERY_FOUND, record);
}

void services(RecordInput input) {
    auto* record = input.record<bt_device_sdp_info_s>();
    record->remote_address = input.text();
    record->service_count = input.count();
    record->service_uuid = input.texts(record->service_count, false);
    bt_device_sdp_info_s expected = *record;
    if (expected.service_count <= 0) {
        expected.service_uuid = nullptr;
    }
    const auto text = describe(&expected);
    deliver<BtDeviceServiceSearchedCb>(input.takeBuffers(), text, input.flag(), 0, record);
}

void features(RecordInput input) {
    auto* record = input.record<bt_avrcp_remote_features_s>();
    *record = {input.text(), input.number(), input.text(), input.text()};
    const auto text = describe(record);
    deliver<BtAvrcpRemoteFeaturesCb>(input.takeBuffers(), text, input.flag(), record);
}

void socketConnection(RecordInput input) {
    auto* record = input.record<bt_socket_connection_s>();
    *record = {input.number(), input.number(), BT_SOCKET_ROLE_SERVER, input.text(), input.text()};
    const auto text = describe(record);
    deliver<BtSocketConnectionStateChangedCb>(input.takeBuffers(), text, input.flag(), 0,
                                              BT_SOCKET_CONNECTED, record);
}

void socketData(RecordInput input) {
    auto* record = input.record<bt_socket_received_data_s>();
    record->socket_fd = input.number();
    record->data_size = input.count();
    record->data = input.bytes(record->data_size);
    bt_socket_received_data_s expected = *record;
    if (expected.data_size <= 0) {
        expected.data = nullptr;
    }
    const auto text = describe(&expected);
    deliver<BtSocketDataReceivedCb>(input.takeBuffers(), text, input.flag(), record);
}

// The platform's address buffer always has at least 18 bytes. Only 18 bytes are copied.
void battery(RecordInput input) {
    auto buffers = std::make_unique<SampleBuffers>();
    auto* record = input.record<bt_hid_battery_status_info_s>();
    record->status = static_cast<unsigned char>(input.number());
    const std::string address = input.text();
    std::string lent = address;
    lent.resize(std::max<std::size_t>(lent.size(), 17));
    record->address = buffers->text(lent);
    bt_hid_battery_status_info_s expected = *record;
    std::string cut = address.substr(0, 17);
    expected.address = cut.data();
    const auto text = describe(&expected);
    const auto own = input.takeBuffers();
    deliver<BtHidBatteryStatusReceivedCb>(std::move(buffers), text, input.flag(), record);
}

void key(RecordInput input) {
    auto* record = input.record<bt_avrcp_key_event_s>();
    *record = {static_cast<unsigned char>(input.number()),
               input.flag() ? BT_AVRCP_KEY_PRESSED : BT_AVRCP_KEY_RELEASED};
    const auto text = describe(record);
    deliver<BtAvrcpKeyEventReceivedCb>(input.takeBuffers(), text, input.flag(), record);
}

// A task of this kind leaks its address if it doesn't run, so both tasks run.
void connection(RecordInput input) {
    auto* record = input.record<bt_device_connection_info_s>();
    *record = {input.text(), input.flag() ? BT_DEVICE_LINK_LE : BT_DEVICE_LINK_BREDR,
               BT_DEVICE_DISCONNECT_REASON_LOCAL};
    const auto text = describe(record);
    deliver<BtDeviceConnectionStateChangedCb>(input.takeBuffers(), text, true, input.flag(),
                                              record);
}

constexpr void (*records[])(RecordInput) = {
    [](RecordInput input) { device<BtDeviceBondCreatedCb>(std::move(input), 0); },
    [](RecordInput input) { device<BtHidSmartRcConnectionCb>(std::move(input), true); },
    [](RecordInput input) {
        device<BtHidBrekSwitchConnectionStateChangedCb>(std::move(input), false);
    },
    &discovery,
    &services,
    &features,
    &socketConnection,
    &socketData,
    &battery,
    &key,
    &connection,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fake_platform::recordNothing();
    Input input(data, size);
    const auto record = input.upTo(std::size(records) - 1);
    records[record](RecordInput(input));
    return 0;
}
