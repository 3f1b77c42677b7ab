// Fixture that runs the daemon with a mock of BlueZ, which has an adapter and a device.
#pragma once

#include <string>
#include <vector>

#include "tests/support/process/HostFixture.h"

class BluezTvFixture : public BluezFixture {
protected:
    static constexpr const char* DEVICE_INTERFACE = "org.bluez.Device1";
    static constexpr const char* CONTROL_INTERFACE = "org.bluez.MediaControl1";
    static constexpr const char* TRANSPORT_INTERFACE = "org.bluez.MediaTransport1";
    static constexpr const char* BATTERY_INTERFACE = "org.bluez.Battery1";
    static constexpr const char* TRANSPORT = "/org/bluez/hci0/dev_AA_BB_CC_DD_EE_01/sep1/fd0";

    /// Starts the bus, and BlueZ with a powered adapter and the device.
    void startTv();

    /// Calls startTv() and startDaemonThere().
    void startAll(const std::string& bluezSettings = "");
    /// Starts the daemon, with additional lines in the settings section [bluez], and waits until
    /// it has reported the adapter.
    void startDaemonThere(const std::string& bluezSettings = "");

    /// Starts only BlueZ, without an adapter.
    void startTvBluez();

    /// Calls a method of the mock, with the arguments in the syntax of gdbus. Returns the output
    /// of gdbus.
    std::string call(const std::string& method, const std::vector<std::string>& arguments) const;

    void addInterface(const std::string& path, const std::string& interface,
                      const std::string& properties) const;
    void removeInterface(const std::string& path, const std::string& interface) const;

    /// Changes or adds properties and emits PropertiesChanged.
    void update(const std::string& path, const std::string& interface,
                const std::string& properties) const;

    /// Does the same for the device.
    void updateDevice(const std::string& properties) const;

    /// Emits PropertiesChanged for the device, with an invalidated property and no values.
    void invalidate(const std::string& property) const;

    /// Waits until the daemon has handled all signals sent so far.
    void settle();

    /// Returns how many times the event-log plugin has logged the event so far.
    int countOf(const std::string& event) const;

    std::string daemonId() const { return std::to_string(m_daemon->id()); }

private:
    int m_marks = 0;
};
