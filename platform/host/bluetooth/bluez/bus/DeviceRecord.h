// What BlueZ tells of a device, in the shapes of the platform's records.
#pragma once

#include <bluetooth.h>

#include <string>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/Properties.h"
#include "platform/host/slots/LentMemory.h"

namespace corvane::host {

/// The device's name, or what stands for it; it may be empty. `device` may be null, here
/// and below.
std::string nameOf(const Properties* device);

/// Whether a UUID is that of the service.
bool isService(const std::string& uuid, Service service);

/// Whether the device offers the service.
bool offers(const Properties* device, Service service);

/// BlueZ doesn't tell the link of a connection. Only an LE device has a random address or
/// no class.
bt_device_connection_link_type_e linkOf(const Properties* device);

bt_class_s classOf(const Properties* device);

/// The parts of a record that are lent to a callback, and live as long as this.
struct LentDevice {
    explicit LentDevice(const Properties* device);

    LentText address;
    LentText name;
    LentTexts uuids;
    LentBytes manufacturerData;
};

}  // namespace corvane::host
