// The plugin's two entry points. The daemon finds them by name, so they are C
// functions that the library gives away; all the rest of it stays inside.
#include <IRequestBroker.h>

#include "plugins/event-log/Events.h"
#include "plugins/event-log/Private.h"

#define PLUGIN_ENTRY extern "C" __attribute__((visibility("default")))

namespace {

// The daemon loads a plugin once, so it may keep its broker like this. The broker
// is valid until PLUGIN_DEINIT has returned.
IRequestBroker* pluginBroker = nullptr;

}  // namespace

/// A negative result would make the daemon drop the plugin.
PLUGIN_ENTRY int PLUGIN_INIT(void* broker) {
    pluginBroker = static_cast<IRequestBroker*>(broker);
    eventlog::readPrivacy();
    for (const auto& event : eventlog::allEvents()) {
        event.subscribe(*pluginBroker, event);
    }
    return 0;
}

/// The daemon undoes no subscription: a callback that stays would be called in a library
/// that has gone.
PLUGIN_ENTRY void PLUGIN_DEINIT() {
    for (const auto& event : eventlog::allEvents()) {
        (pluginBroker->*event.unsubscribe)();
    }
}
