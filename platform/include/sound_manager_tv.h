/*
 * TV extension of the sound manager: which output route is used. Each kind of event
 * has one callback: setting replaces it, unsetting clears it.
 * Every function returns 0 or a negative error.
 */
#ifndef PLATFORM_SOUND_MANAGER_TV_H
#define PLATFORM_SOUND_MANAGER_TV_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum sound_tv_output_route_e {
    SOUND_TV_OUTPUT_ROUTE_SPEAKER = 0,
    SOUND_TV_OUTPUT_ROUTE_BLUETOOTH = 1,
    SOUND_TV_OUTPUT_ROUTE_OPTICAL = 2,
    SOUND_TV_OUTPUT_ROUTE_HDMI = 3,
    SOUND_TV_OUTPUT_ROUTE_LINE_OUT = 4,
} sound_tv_output_route_e;

typedef void (*sound_manager_speaker_changed_cb)(sound_tv_output_route_e route, void* user_data);
int sound_manager_set_speaker_changed_cb(sound_manager_speaker_changed_cb callback,
                                         void* user_data);
int sound_manager_unset_speaker_changed_cb(void);

/* `view` is the index of a view of the split screen, from 0. */
typedef void (*sound_manager_multiview_speaker_selection_changed_cb)(sound_tv_output_route_e route,
                                                                     int view, void* user_data);
int sound_manager_set_multiview_speaker_selection_changed_cb(
    sound_manager_multiview_speaker_selection_changed_cb callback, void* user_data);
int sound_manager_unset_multiview_speaker_selection_changed_cb(void);

#ifdef __cplusplus
}
#endif

#endif
