// A plugin that never unsubscribes from an event for which the platform starts a thread.
#include "tests/plugins/Fixture.h"

namespace {

void onSpeaker(sound_tv_output_route_e, void*) {}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->SoundManagerSetSpeakerChangedCb(&onSpeaker, nullptr);
}

void PLUGIN_DEINIT() {}
