// The charge of devices.
#pragma once

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"

namespace corvane::host {

class BatteryReporter : public BluezReporter {
public:
    void onChange(const Change& change) override;
};

}  // namespace corvane::host
