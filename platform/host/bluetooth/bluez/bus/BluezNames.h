// The interfaces of BlueZ's objects that matter here, and the numbers of services.
#pragma once

#include <cstdint>
#include <string_view>

namespace corvane::host {

inline constexpr std::string_view adapterInterface = "org.bluez.Adapter1";
inline constexpr std::string_view deviceInterface = "org.bluez.Device1";
inline constexpr std::string_view batteryInterface = "org.bluez.Battery1";
inline constexpr std::string_view gattServiceInterface = "org.bluez.GattService1";
inline constexpr std::string_view mediaControlInterface = "org.bluez.MediaControl1";
inline constexpr std::string_view mediaTransportInterface = "org.bluez.MediaTransport1";

enum class Service : std::uint16_t {
    SerialPort = 0x1101,
    AudioSource = 0x110a,
    AudioSink = 0x110b,
    RemoteControlTarget = 0x110c,
    AudioDistribution = 0x110d,
    RemoteControl = 0x110e,
    RemoteControlController = 0x110f,
    HandsFree = 0x111e,
    HandsFreeGateway = 0x111f,
    HumanInterface = 0x1124,
    HumanInterfaceOverGatt = 0x1812,
};

}  // namespace corvane::host
