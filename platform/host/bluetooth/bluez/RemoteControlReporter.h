// The connections of the remote-control profile (AVRCP), by the remote's role.
#pragma once

#include "platform/host/bluetooth/bluez/BluezReporter.h"
#include "platform/host/bluetooth/bluez/PathSet.h"

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
