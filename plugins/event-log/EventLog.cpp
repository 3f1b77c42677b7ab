// The plugin's two entry points. The daemon finds them by name, so they are exported C functions.
// The library exports nothing else.
#include <IRequestBroker.h>

#include "plugins/event-log/LoggedEvents.h"
#include "plugins/event-log/Private.h"

#define PLUGIN_ENTRY extern "C" __attribute__((visibility("default")))

namespace {

// The daemon loads a plugin once, so a variable can store its broker. The broker is valid until
// PLUGIN_DEINIT has returned.
IRequestBroker* pluginBroker = nullptr;

}  // namespace

/// After a negative result the daemon would close the plugin's library.
PLUGIN_ENTRY int PLUGIN_INIT(void* broker) {
    pluginBroker = static_cast<IRequestBroker*>(broker);
    eventlog::readPrivacy();
    for (const auto& event : eventlog::allEvents()) {
        event.subscribe(*pluginBroker, event);
    }
    return 0;
}

/// The daemon undoes no subscription. A callback that stayed subscribed would be called in a
/// library that is no longer mapped.
PLUGIN_ENTRY void PLUGIN_DEINIT() {
    for (const auto& event : eventlog::allEvents()) {
        (pluginBroker->*event.unsubscribe)();
    }
}
