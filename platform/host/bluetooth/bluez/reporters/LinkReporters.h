// What a device is connected for: GATT over LE, or as an input device. BlueZ tells
// neither directly; both follow from the connection and what is known of the device.
#pragma once

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"
#include "platform/host/bluetooth/bluez/bus/PathSet.h"

namespace corvane::host {

/// Base of both: connected once the connection has proved to be of the kind, until it ends.
class LinkReporter : public BluezReporter {
public:
    void onChange(const Change& change) override;
    void onSnapshot(const BluezObjects& objects) override;

protected:
    virtual bool isProved(const BluezObjects& objects, const std::string& path,
                          const Properties& device) const = 0;
    virtual void deliver(bool connected, const std::string& address) const = 0;

private:
    bool isConnected(const BluezObjects& objects, const std::string& path) const;

    PathSet m_connected;
};

class GattReporter : public LinkReporter {
protected:
    bool isProved(const BluezObjects& objects, const std::string& path,
                  const Properties& device) const override;
    void deliver(bool connected, const std::string& address) const override;
};

class HidReporter : public LinkReporter {
protected:
    bool isProved(const BluezObjects& objects, const std::string& path,
                  const Properties& device) const override;
    void deliver(bool connected, const std::string& address) const override;
};

}  // namespace corvane::host
