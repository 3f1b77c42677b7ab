// The deep copy of a device record, shared by the three event sources that carry one.
#pragma once

#include <bluetooth.h>

#include <memory>

class DeviceInfoCopy {
public:
    /// An owned copy of `info`; empty for null. The only record copy that takes null
    /// pointers, in every place. Any thread; throws std::bad_alloc.
    static std::shared_ptr<bt_device_info_s> copy(bt_device_info_s* info);
};
