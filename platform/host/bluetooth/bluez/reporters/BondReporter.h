// Bonds with devices.
#pragma once

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"

namespace corvane::host {

class BluezPeer;

class BondReporter : public BluezReporter {
public:
    /// `peer` outlives this.
    explicit BondReporter(BluezPeer& peer) : m_peer(peer) {}

    void onChange(const Change& change) override;

private:
    void onRemoved(const Properties& device);

    BluezPeer& m_peer;
};

}  // namespace corvane::host
