// The volume of audio connections.
#pragma once

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"
#include "platform/host/bluetooth/bluez/bus/PathSet.h"

namespace corvane::host {

class VolumeReporter : public BluezReporter {
public:
    void onChange(const Change& change) override;

private:
    void onControl(const Change& change);
    void onTransport(const Change& change);

    // Devices whose remote control has connected and that have told no volume since.
    PathSet m_silent;
};

}  // namespace corvane::host
