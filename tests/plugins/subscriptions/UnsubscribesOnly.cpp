// A plugin that unsubscribes and deinitialises what nobody asked for.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void* handle) {
    auto* const broker = static_cast<IRequestBroker*>(handle);
    say("adapter state: %d", broker->BtAdapterUnsetStateChangedCb());
    say("speaker: %d", broker->SoundManagerUnetSpeakerChangedCb());
    say("AVRCP target: %d", broker->BtAvrcpTargetDeinitialize());
    return 0;
}
