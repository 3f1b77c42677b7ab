// A device record with strings, as the platform passes it and as an alternative would copy it.
#pragma once

#include <bluetooth.h>

#include <array>
#include <string>
#include <vector>

/// Lent for as long as it lives.
class LentDevice {
public:
    LentDevice() {
        m_info.remote_address = m_address.data();
        m_info.remote_name = m_name.data();
        m_info.bt_class = {4, 6, 0x240};
        m_info.service_uuid = m_services.data();
        m_info.service_count = static_cast<int>(m_services.size());
        m_info.is_bonded = true;
        m_info.manufacturer_data = m_data.data();
        m_info.manufacturer_data_len = static_cast<int>(m_data.size());
    }
    LentDevice(const LentDevice&) = delete;
    LentDevice& operator=(const LentDevice&) = delete;

    bt_device_info_s* get() { return &m_info; }

private:
    std::string m_address = "12:34:56:78:9A:BC";
    std::string m_name = "Headset in the living room";
    std::string m_audioSink = "0000110b-0000-1000-8000-00805f9b34fb";
    std::string m_handsFree = "0000111e-0000-1000-8000-00805f9b34fb";
    std::array<char*, 2> m_services{m_audioSink.data(), m_handsFree.data()};
    std::array<char, 8> m_data{1, 2, 3, 4, 5, 6, 7, 8};
    bt_device_info_s m_info{};
};

/// The same with values of the language, copied for each subscriber.
struct DeviceCopy {
    explicit DeviceCopy(const bt_device_info_s& info)
        : address(info.remote_address),
          name(info.remote_name),
          deviceClass(info.bt_class),
          services(info.service_uuid, info.service_uuid + info.service_count),
          isBonded(info.is_bonded),
          isConnected(info.is_connected),
          isAuthorized(info.is_authorized),
          data(info.manufacturer_data, info.manufacturer_data + info.manufacturer_data_len) {}

    std::string address;
    std::string name;
    bt_class_s deviceClass;
    std::vector<std::string> services;
    bool isBonded;
    bool isConnected;
    bool isAuthorized;
    std::vector<char> data;
};
