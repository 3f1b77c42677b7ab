// A plugin that unsubscribes from events without a subscription, and deinitialises a profile that
// it has not initialised.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    say("adapter state: %d", broker->BtAdapterUnsetStateChangedCb());
    say("speaker: %d", broker->SoundManagerUnetSpeakerChangedCb());
    say("AVRCP target: %d", broker->BtAvrcpTargetDeinitialize());
    return 0;
}
