// The TV extension's functions of the sound manager: they set and unset the speaker callbacks.
#include <sound_manager_tv.h>

#include "platform/host/slots/CallbackSlot.h"
#include "platform/host/sound/SpeakerEvents.h"

namespace {

constexpr auto& speakerSlot = corvane::host::slotOf<&sound_manager_set_speaker_changed_cb>;

}  // namespace

PLATFORM_API int sound_manager_set_speaker_changed_cb(sound_manager_speaker_changed_cb callback,
                                                      void* userData) {
    const corvane::host::SlowWatch watch(speakerSlot.event(), "set call");
    const int result = speakerSlot.set(callback, userData);
    corvane::host::followSpeakerCallback();
    return result;
}

PLATFORM_API int sound_manager_unset_speaker_changed_cb() {
    const corvane::host::SlowWatch watch(speakerSlot.event(), "unset call");
    const int result = speakerSlot.unset();
    corvane::host::followSpeakerCallback();
    return result;
}

CALLBACK_PAIR(sound_manager_set_multiview_speaker_selection_changed_cb,
              sound_manager_unset_multiview_speaker_selection_changed_cb)
