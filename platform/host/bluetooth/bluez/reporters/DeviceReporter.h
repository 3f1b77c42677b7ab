// The connections of devices, and the services found on them.
#pragma once

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"

namespace corvane::host {

class BluezPeer;

class DeviceReporter : public BluezReporter {
public:
    /// Both outlive the answers of `peer`.
    DeviceReporter(BluezObjects& objects, BluezPeer& peer) : m_objects(objects), m_peer(peer) {}

    void onChange(const Change& change) override;

private:
    static void onAdded(const Properties& device);
    void checkConnected(const std::string& path);

    BluezObjects& m_objects;
    BluezPeer& m_peer;
};

}  // namespace corvane::host
