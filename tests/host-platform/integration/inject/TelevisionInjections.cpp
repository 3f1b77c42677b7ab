// The injections of television events: accessories, broadcasts and speakers.
#include "tests/host-platform/integration/inject/Injections.h"

namespace {

const Injection TELEVISION_EVENTS[] = {
    {"bt-hid-brek-switch-charging-status-received",
     "BtHidBrekSwitchChargingStatusReceived",
     {"level=255", "charging=0"},
     {"yy", "255", "0"},
     "level=80 charging=1",
     "level=255 charging=0"},
    {"bt-hid-brek-switch-connection-state-changed",
     "BtHidBrekSwitchConnectionStateChanged",
     {"connected=false", "present=false"},
     {"ba{sv}", "false", "1", "present", "b", "false"},
     "connected=true info={remote_address=\"AA:BB:CC:DD:EE:FF\" remote_name=\"Headset\" "
     "bt_class={major_device_class=4 minor_device_class=1 major_service_class_mask=288} "
     "service_uuid=[110b,110e] is_bonded=true is_connected=false is_authorized=false "
     "manufacturer_data=[0a0b]}",
     "connected=false info=none"},
    {"bt-hid-brek-switch-firmware-update-state-changed",
     "BtHidBrekSwitchFirmwareUpdateStateChanged",
     {"state=-1"},
     {"i", "-1"},
     "state=0",
     "state=-1"},
    {"bt-hid-battery-status-received",
     "BtHidBatteryStatusReceived",
     {"status=0", "address=AA:BB:CC:DD:EE:FF:and:more"},
     {"a{sv}", "2", "status", "y", "0", "address", "s", "AA:BB:CC:DD:EE:FF:and:more"},
     "status={status=80 address=\"AA:BB:CC:DD:EE:FF\"}",
     "status={status=0 address=\"AA:BB:CC:DD:EE:FF\"}"},
    {"bt-hid-battery-status-received",
     "BtHidBatteryStatusReceived",
     {"address="},
     {"a{sv}", "1", "address", "s", ""},
     nullptr,
     "status={status=80 address=\"\"}"},
    {"bt-hid-smart-rc-charging-status-received",
     "BtHidSmartRcChargingStatusReceived",
     {"level=1"},
     {"yy", "1", "1"},
     "level=80 charging=1",
     "level=1 charging=1"},
    {"bt-hid-smart-rc-connection",
     "BtHidSmartRcConnection",
     {"present=false"},
     {"ba{sv}", "true", "1", "present", "b", "false"},
     "connected=true info={remote_address=\"AA:BB:CC:DD:EE:FF\" remote_name=\"Headset\" "
     "bt_class={major_device_class=4 minor_device_class=1 major_service_class_mask=288} "
     "service_uuid=[110b,110e] is_bonded=true is_connected=false is_authorized=false "
     "manufacturer_data=[0a0b]}",
     "connected=true info=none"},
    {"bt-hid-smart-rc-fw-update-status",
     "BtHidSmartRcFwUpdateStatus",
     {"status=2", "progress=100"},
     {"iy", "2", "100"},
     "status=0 progress=50",
     "status=2 progress=100"},
    {"bt-hid-smart-rc-grip-sensor-detected",
     "BtHidSmartRcGripSensorDetected",
     {"detected=0"},
     {"y", "0"},
     "detected=1",
     "detected=0"},
    {"bt-hid-smart-rc-grip-sensor-state-changed",
     "BtHidSmartRcGripSensorStateChanged",
     {"state=released"},
     {"s", "released"},
     "state=held",
     "state=released"},
    {"bt-le-audio-broadcast-state-changed",
     "BtLeAudioBroadcastStateChanged",
     {"state=configured", "codec=1", "sample_rate=16000", "channels=1"},
     {"siii", "configured", "1", "16000", "1"},
     "state=streaming stream_type={codec=6 sample_rate=48000 channels=2}",
     "state=configured stream_type={codec=1 sample_rate=16000 channels=1}"},
    {"sound-manager-speaker-changed",
     "SoundManagerSpeakerChanged",
     {"route=line-out"},
     {"s", "4"},
     "route=bluetooth",
     "route=line-out"},
    {"sound-manager-multiview-speaker-changed",
     "SoundManagerMultiviewSpeakerChanged",
     {"route=hdmi", "view=1"},
     {"si", "hdmi", "1"},
     "route=bluetooth view=0",
     "route=hdmi view=1"},
};

}  // namespace

std::span<const Injection> televisionInjections() {
    return TELEVISION_EVENTS;
}
