// What BlueZ publishes about a device and its services, as the platform's types.
// A `device` may be null everywhere; it then has no properties.
#pragma once

#include <bluetooth.h>

#include <cstdint>
#include <memory>
#include <string>

#include "platform/host/bluez/bus/Properties.h"
#include "platform/host/slots/LentMemory.h"

namespace corvane::host {

/// Services by their 16-bit UUID.
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

/// Returns true if a UUID in its long form is that of the service.
bool isService(const std::string& uuid, Service service);

bool offers(const Properties* device, Service service);

/// The platform's number of the service that `device` wants to use.
bt_profile_service_id_e serviceId(const std::string& uuid, const Properties* device);

/// The device's name or else its alias; may be empty.
std::string nameOf(const Properties* device);

/// BlueZ does not publish the link type of a connection. A device with a random address or
/// without a class is an LE device.
bt_device_connection_link_type_e linkOf(const Properties* device);

/// Strings and arrays that the fields of a record point to during a callback.
struct LentDevice {
    explicit LentDevice(const Properties* device);

    /// Makes a record and sets the fields that both device records have. The record points
    /// into this object.
    template <typename Record>
    std::unique_ptr<Record> makeRecord() {
        auto record = std::make_unique<Record>();
        record->remote_address = address.get();
        record->remote_name = name.get();
        record->bt_class = classOfDevice;
        record->service_uuid = uuids.get();
        record->service_count = uuids.count();
        record->is_bonded = isPaired;
        record->manufacturer_data_len = manufacturerData.count();
        record->manufacturer_data = manufacturerData.get();
        return record;
    }

    LentText address;
    LentText name;
    LentTexts uuids;
    LentBytes manufacturerData;
    bt_class_s classOfDevice;
    bool isPaired;
};

}  // namespace corvane::host
