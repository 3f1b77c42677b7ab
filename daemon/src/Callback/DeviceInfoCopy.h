// The deep copy of a device record. Three event sources use it.
#pragma once

#include <bluetooth.h>

#include <memory>

class DeviceInfoCopy {
public:
    /// Returns an owned copy of `info`, or an empty pointer if `info` is null. Accepts null
    /// pointers in every field; no other record copy does. Any thread; throws std::bad_alloc.
    static std::shared_ptr<bt_device_info_s> copy(bt_device_info_s* info);
};
