// The daemon with a mock of BlueZ that has an adapter and a device.
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

    /// Starts the bus and BlueZ, with an adapter that is on and the device.
    void startTv();

    /// Also starts the daemon, with additional lines in the settings section [bluez], and waits
    /// until it has reported the adapter.
    void startAll(const std::string& bluezSettings = "");
    void startDaemonThere(const std::string& bluezSettings = "");

    /// Starts only BlueZ, without an adapter.
    void startTvBluez();

    /// Calls a method of the mock with `arguments` as gdbus takes them. Returns its answer.
    std::string call(const std::string& method, const std::vector<std::string>& arguments) const;

    void addInterface(const std::string& path, const std::string& interface,
                      const std::string& properties) const;
    void removeInterface(const std::string& path, const std::string& interface) const;

    /// Changes or adds properties and emits the signal.
    void update(const std::string& path, const std::string& interface,
                const std::string& properties) const;

    /// Changes properties of the device.
    void updateDevice(const std::string& properties) const;

    /// Emits PropertiesChanged of the device with nothing but an invalidated property.
    void invalidate(const std::string& property) const;

    /// Waits until the daemon has handled all signals sent so far.
    void settle();

    /// Returns how many times the daemon has reported the event so far.
    int countOf(const std::string& event) const;

    std::string daemonId() const { return std::to_string(m_daemon->id()); }

private:
    int m_marks = 0;
};
