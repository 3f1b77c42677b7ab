// The event sources of the sound manager, built like those in BluetoothCallback.h.
#pragma once

#include <sound_manager_tv.h>

#include "daemon/src/Callback/EventSource.h"

class SoundManagerSpeakerChangedCb
    : public CallbackImpl<sound_manager_speaker_changed_cb, sound_tv_output_route_e> {
    EVENT_SOURCE(SoundManagerSpeakerChangedCb, sound_manager_set_speaker_changed_cb,
                 sound_manager_unset_speaker_changed_cb)

    std::function<void()> getInvokingTask(sound_manager_speaker_changed_cb fn,
                                          sound_tv_output_route_e route, void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, route);
    }
};

class SoundManagerMultiviewSpeakerChangedCb
    : public CallbackImpl<sound_manager_multiview_speaker_selection_changed_cb,
                          sound_tv_output_route_e, int> {
    EVENT_SOURCE(SoundManagerMultiviewSpeakerChangedCb,
                 sound_manager_set_multiview_speaker_selection_changed_cb,
                 sound_manager_unset_multiview_speaker_selection_changed_cb)

    std::function<void()> getInvokingTask(sound_manager_multiview_speaker_selection_changed_cb fn,
                                          sound_tv_output_route_e route, int view,
                                          void* userData) override {
        ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
        return event_source::makeTask(fn, userData, route, view);
    }
};
