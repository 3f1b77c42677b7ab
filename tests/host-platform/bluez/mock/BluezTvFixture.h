// The daemon with a BlueZ that has an adapter and a device, and does all a BlueZ does.
#pragma once

#include <string>
#include <vector>

#include "tests/support/process/HostFixture.h"

class BluezTvFixture : public BluezFixture {
protected:
    static constexpr const char* deviceInterface = "org.bluez.Device1";
    static constexpr const char* controlInterface = "org.bluez.MediaControl1";
    static constexpr const char* transportInterface = "org.bluez.MediaTransport1";
    static constexpr const char* batteryInterface = "org.bluez.Battery1";
    static constexpr const char* transport = "/org/bluez/hci0/dev_AA_BB_CC_DD_EE_01/sep1/fd0";

    /// Starts the bus and BlueZ, with an adapter that is on and the device.
    void startTv();

    /// Starts the daemon as well, with more lines of the settings' section of BlueZ, and
    /// waits until it has seen the adapter.
    void startAll(const std::string& bluezSettings = "");
    void startDaemonThere(const std::string& bluezSettings = "");

    /// Starts BlueZ alone, without an adapter.
    void startTvBluez();

    /// A method of the mock with `arguments` as gdbus takes them; returns its answer.
    std::string call(const std::string& method, const std::vector<std::string>& arguments) const;

    void addInterface(const std::string& path, const std::string& interface,
                      const std::string& properties) const;
    void removeInterface(const std::string& path, const std::string& interface) const;

    /// Changes properties, known or new ones, with the signal.
    void update(const std::string& path, const std::string& interface,
                const std::string& properties) const;

    /// Changes properties of the device.
    void updateDevice(const std::string& properties) const;

    /// Emits PropertiesChanged of the device with nothing but an invalidated property.
    void invalidate(const std::string& property) const;

    /// Waits until the daemon has handled all signals up to now.
    void settle();

    /// How often the daemon has reported the event up to now.
    int countOf(const std::string& event) const;

    std::string daemonId() const { return std::to_string(m_daemon->id()); }

private:
    int m_marks = 0;
};
