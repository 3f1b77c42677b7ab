// TV extension of the sound manager on the host: keeps the callbacks.
#include "CallbackSlot.h"

#include <sound_manager_tv.h>

CALLBACK_PAIR(sound_manager_set_speaker_changed_cb, sound_manager_unset_speaker_changed_cb)
CALLBACK_PAIR(sound_manager_set_multiview_speaker_selection_changed_cb,
              sound_manager_unset_multiview_speaker_selection_changed_cb)
