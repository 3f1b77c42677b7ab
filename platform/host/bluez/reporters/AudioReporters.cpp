// Audio connections, whether they stream, and their volume. They are BlueZ's media
// transports, which exist only while a program on this machine, as a rule a sound server,
// plays or records over Bluetooth.
#include <bluetooth.h>
#include <bluetooth_tv.h>

#include "platform/host/bluez/bus/BluezObjects.h"
#include "platform/host/bluez/bus/DeviceRecord.h"
#include "platform/host/bluez/reporters/Reporters.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

bool isActive(const Properties* transport) {
    return propertyOr<std::string>(transport, "State") == "active";
}

class AudioReporter : public BluezReporter {
public:
    void onChange(const Change& change) override {
        if (change.interface != MEDIA_TRANSPORT_INTERFACE) {
            return;
        }
        const auto* const transport = change.now == nullptr ? change.before : change.now;
        const auto uuid = propertyOr<std::string>(transport, "UUID");
        const bool isSource = isService(uuid, Service::AudioSource);
        if (!isSource && !isService(uuid, Service::AudioSink)) {
            return;
        }
        const auto address = change.objects.addressOf(propertyOr<std::string>(transport, "Device"));
        const auto reportConnection = [&](bool connected) {
            slotOf<&bt_audio_set_connection_state_changed_cb>.deliver(
                0, connected, address.c_str(),
                isSource ? BT_AUDIO_PROFILE_A2DP_SOURCE : BT_AUDIO_PROFILE_A2DP_SINK);
        };
        if (change.before == nullptr) {
            reportConnection(true);
        }
        if (isSource && isActive(change.now) != isActive(change.before)) {
            slotOf<&bt_audio_set_audio_state_changed_cb>.deliver(
                isActive(change.now) ? BT_A2DP_SOURCE_AUDIO_STATE_STARTED
                                     : BT_A2DP_SOURCE_AUDIO_STATE_STOPPED,
                address.c_str());
        }
        if (change.now == nullptr) {
            reportConnection(false);
        }
    }
};

// BlueZ has one volume for each transport. Which side changed it follows from the direction
// of the audio.
class VolumeReporter : public BluezReporter {
public:
    void onChange(const Change& change) override {
        if (change.interface == MEDIA_CONTROL_INTERFACE) {
            onControl(change);
        } else if (change.interface == MEDIA_TRANSPORT_INTERFACE && change.now != nullptr) {
            onTransport(change);
        }
    }

private:
    void onControl(const Change& change) {
        const bool wasConnected = propertyOr<bool>(change.before, "Connected");
        const bool isConnected = propertyOr<bool>(change.now, "Connected");
        if (isConnected != wasConnected) {
            setMember(m_awaitFirst, change.path, isConnected && !change.isFound);
        }
    }

    void onTransport(const Change& change) {
        const auto* const volume = changedTo<std::uint16_t>(change, "Volume");
        if (volume == nullptr) {
            return;
        }
        const auto device = propertyOr<std::string>(change.now, "Device");
        const auto address = change.objects.addressOf(device);
        const auto uuid = propertyOr<std::string>(change.now, "UUID");
        const bool isSource = isService(uuid, Service::AudioSource);
        const bool isFirst = isSource && setMember(m_awaitFirst, device, false);
        if (!isFirst && change.before == nullptr) {
            return;  // the transport's initial volume is no change
        }
        if (isFirst) {
            slotOf<&bt_avrcp_set_interim_volume_notify_cb>.deliver(address.c_str(), *volume);
        } else if (isSource) {
            slotOf<&bt_avrcp_set_volume_changed_with_address_cb>.deliver(address.c_str(), *volume);
        } else if (isService(uuid, Service::AudioSink)) {
            slotOf<&bt_avrcp_set_absolute_volume_changed_cb>.deliver(address.c_str(), *volume);
        }
        if (isActive(change.now)) {
            slotOf<&bt_avrcp_set_volume_changed_cb>.deliver(*volume);
        }
    }

    // Devices whose remote control has connected and that have reported no volume since.
    PathSet m_awaitFirst;
};

}  // namespace

std::unique_ptr<BluezReporter> makeAudioReporter() {
    return std::make_unique<AudioReporter>();
}

std::unique_ptr<BluezReporter> makeVolumeReporter() {
    return std::make_unique<VolumeReporter>();
}

}  // namespace corvane::host
