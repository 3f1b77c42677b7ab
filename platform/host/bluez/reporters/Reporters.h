// The reporters of BlueZ's objects, one for each subject. Each compares an object before
// and after a change and calls the callbacks of the events that follow from it.
// docs/bluez.md describes which property becomes which event.
#pragma once

#include <memory>

#include "platform/host/bluez/bus/BluezReporter.h"

namespace corvane::host {

class BluezPeer;

/// The adapter's power state and name.
std::unique_ptr<BluezReporter> makeAdapterReporter();

/// Start and end of discovery, and the devices it finds.
std::unique_ptr<BluezReporter> makeDiscoveryReporter();

/// Connections of devices and their services. `objects` and `peer` outlive the reporter.
std::unique_ptr<BluezReporter> makeDeviceReporter(BluezObjects& objects, BluezPeer& peer);

/// Bonds. `peer` outlives the reporter.
std::unique_ptr<BluezReporter> makeBondReporter(BluezPeer& peer);

/// Battery levels of devices.
std::unique_ptr<BluezReporter> makeBatteryReporter();

/// GATT connections over LE.
std::unique_ptr<BluezReporter> makeGattReporter();

/// Connections of input devices (HID).
std::unique_ptr<BluezReporter> makeHidReporter();

/// AVRCP connections, by the role of the remote device.
std::unique_ptr<BluezReporter> makeRemoteControlReporter();

/// Audio connections and whether they stream.
std::unique_ptr<BluezReporter> makeAudioReporter();

/// The volume of audio connections.
std::unique_ptr<BluezReporter> makeVolumeReporter();

}  // namespace corvane::host
