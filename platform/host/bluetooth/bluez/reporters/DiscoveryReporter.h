// Discovery: its start and end, and the devices it finds.
#pragma once

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"

namespace corvane::host {

class DiscoveryReporter : public BluezReporter {
public:
    void onChange(const Change& change) override;
    void onSnapshot(const BluezObjects& objects) override;

private:
    void onAdapter(const Change& change);
    void onDevice(const Change& change) const;

    bool m_discovering = false;
};

}  // namespace corvane::host
