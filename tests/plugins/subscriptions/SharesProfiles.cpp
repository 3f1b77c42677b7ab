// A plugin that initialises the HID host once and AVRCP control twice, and deinitialises each once.
// If KEEPS_PROFILES is true, it leaves them initialised.
#include <IRequestBroker.h>

#include "tests/plugins/Fixture.h"

namespace {

void onHidHost(int, bool, const char*, void*) {}
void onAvrcp(bool, const char*, void*) {}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    say("HID host: %d", broker->BtHidHostInitialize(&onHidHost, nullptr));
    say("AVRCP control: %d", broker->BtAvrcpControlInitialize(&onAvrcp, nullptr));
    say("AVRCP control again: %d", broker->BtAvrcpControlInitialize(&onAvrcp, nullptr));
    return 0;
}

void PLUGIN_DEINIT() {
    if (!KEEPS_PROFILES) {
        say("HID host given up: %d", broker->BtHidHostDeinitialize());
        say("AVRCP control given up: %d", broker->BtAvrcpControlDeinitialize());
    }
}
