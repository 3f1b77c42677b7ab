// The connections of the remote-control profile (AVRCP), by the remote's role.
#pragma once

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"
#include "platform/host/bluetooth/bluez/bus/PathSet.h"

namespace corvane::host {

class RemoteControlReporter : public BluezReporter {
public:
    void onChange(const Change& change) override;
    void onSnapshot(const BluezObjects& objects) override;

private:
    PathSet m_targets;
    PathSet m_controllers;
};

}  // namespace corvane::host
