// The C functions of the TV extension of the sound manager. The sound server is watched only
// while there is a speaker-changed callback.
#include <sound_manager_tv.h>

#include "platform/host/libraries/CallbackPair.h"
#include "platform/host/sound/SpeakerEvents.h"

namespace {

constexpr auto& speakerSlot = corvane::host::SlotOf<&sound_manager_set_speaker_changed_cb>::get;

}  // namespace

PLATFORM_API int sound_manager_set_speaker_changed_cb(sound_manager_speaker_changed_cb callback,
                                                      void* userData) {
    const corvane::host::SlowWatch watch(speakerSlot().event(), "set call");
    const int result = speakerSlot().set(callback, userData);
    corvane::host::followSpeakerCallback();
    return result;
}

PLATFORM_API int sound_manager_unset_speaker_changed_cb() {
    const corvane::host::SlowWatch watch(speakerSlot().event(), "unset call");
    const int result = speakerSlot().unset();
    corvane::host::followSpeakerCallback();
    return result;
}

CALLBACK_PAIR(sound_manager_set_multiview_speaker_selection_changed_cb,
              sound_manager_unset_multiview_speaker_selection_changed_cb)
