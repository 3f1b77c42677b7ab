// Audio connections and whether sound flows on them: the transports of BlueZ, which
// exist only while somebody on this machine, a sound server as a rule, plays or
// records by Bluetooth.
#include "platform/host/bluetooth/bluez/reporters/AudioReporter.h"

#include <bluetooth.h>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

bool isActive(const Properties* transport) {
    return propertyOr<std::string>(transport, "State") == "active";
}

}  // namespace

void AudioReporter::onChange(const Change& change) {
    if (change.interface != mediaTransportInterface) {
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

}  // namespace corvane::host
