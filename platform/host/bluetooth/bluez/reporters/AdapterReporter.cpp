// The state and the name of the adapter. The state is the one thing that is told
// when it is merely found: plugins cannot ask for it.
#include "platform/host/bluetooth/bluez/reporters/AdapterReporter.h"

#include <bluetooth.h>

#include "platform/host/bluetooth/bluez/bus/BluezNames.h"
#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

void AdapterReporter::onChange(const Change& change) {
    if (change.interface != adapterInterface) {
        return;
    }
    reportState(change.objects);
    if (change.before == nullptr || change.now == nullptr ||
        change.path != change.objects.adapterPath()) {
        return;
    }
    auto name = propertyOr<std::string>(change.now, "Alias");
    if (!name.empty() && name != propertyOr<std::string>(change.before, "Alias")) {
        slotOf<&bt_adapter_set_name_changed_cb>.deliver(name.data());
    }
}

void AdapterReporter::onSnapshot(const BluezObjects& objects) {
    reportState(objects);
}

void AdapterReporter::reportState(const BluezObjects& objects) {
    const auto* const adapter = objects.find(objects.adapterPath(), adapterInterface);
    const auto* const found =
        adapter == nullptr ? nullptr : findProperty<bool>(*adapter, "Powered");
    auto powered = found == nullptr ? std::nullopt : std::optional(*found);
    if (!powered && m_reportedPowered) {
        powered = false;
    }
    if (powered != m_reportedPowered) {
        m_reportedPowered = powered;
        slotOf<&bt_adapter_set_state_changed_cb>.deliver(
            0, *powered ? BT_ADAPTER_STATE_ON : BT_ADAPTER_STATE_OFF);
    }
}

}  // namespace corvane::host
