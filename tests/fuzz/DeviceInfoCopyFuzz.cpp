// A device record of any shape, null pointers included, is copied as it is.
#include <bluetooth.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "DeviceInfoCopy.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

bool same(const char* a, const char* b) {
    return a == nullptr ? b == nullptr : b != nullptr && std::strcmp(a, b) == 0;
}

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data, size) {}

    bool flag() { return m_data.ConsumeBool(); }
    int number(int low, int high) { return m_data.ConsumeIntegralInRange(low, high); }
    char* text() {
        if (flag()) {
            return nullptr;
        }
        return m_texts.emplace_back(m_data.ConsumeRandomLengthString(64)).data();
    }

private:
    FuzzedDataProvider m_data;
    std::deque<std::string> m_texts;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    bt_device_info_s info{};
    info.remote_address = input.text();
    info.remote_name = input.text();
    info.bt_class = {input.number(0, 31), input.number(0, 63), input.number(0, 2047)};
    info.service_count = input.number(-2, 16);
    std::vector<char*> services;
    for (int i = 0; i < info.service_count; ++i) {
        services.push_back(input.text());
    }
    info.service_uuid = input.flag() ? nullptr : services.data();
    info.is_bonded = input.flag();
    info.is_connected = input.flag();
    info.is_authorized = input.flag();
    info.manufacturer_data_len = input.number(-2, 64);
    std::vector<char> bytes(64, 'b');
    info.manufacturer_data = input.flag() ? nullptr : bytes.data();

    const auto copy = DeviceInfoCopy::copy(&info);
    require(same(copy->remote_address, info.remote_address));
    require(same(copy->remote_name, info.remote_name));
    require(copy->bt_class.major_device_class == info.bt_class.major_device_class);
    require(copy->bt_class.minor_device_class == info.bt_class.minor_device_class);
    require(copy->bt_class.major_service_class_mask == info.bt_class.major_service_class_mask);
    require(copy->service_count == info.service_count);
    const bool hasServices = info.service_count > 0 && info.service_uuid != nullptr;
    require((copy->service_uuid != nullptr) == hasServices);
    for (int i = 0; hasServices && i < info.service_count; ++i) {
        require(same(copy->service_uuid[i], info.service_uuid[i]));
    }
    require(copy->is_bonded == info.is_bonded);
    require(copy->is_connected == info.is_connected);
    require(copy->is_authorized == info.is_authorized);
    require(copy->manufacturer_data_len == info.manufacturer_data_len);
    const bool hasData = info.manufacturer_data_len > 0 && info.manufacturer_data != nullptr;
    require((copy->manufacturer_data != nullptr) == hasData);
    require(!hasData || std::memcmp(copy->manufacturer_data, info.manufacturer_data,
                                    static_cast<std::size_t>(info.manufacturer_data_len)) == 0);
    return 0;
}
