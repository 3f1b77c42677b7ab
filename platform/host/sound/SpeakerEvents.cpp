// Turns changes of the sound server's default sink into speaker-changed events.
#include "platform/host/sound/SpeakerEvents.h"

#include <Ecore.h>
#include <dlog.h>
#include <sound_manager_tv.h>

#include <cstdint>
#include <exception>

#include "platform/host/slots/CallbackSlot.h"
#include "platform/host/sound/SinkRoutes.h"
#include "platform/host/sound/SoundServer.h"

namespace corvane::host {

namespace {

// Used on the main thread only. A plain pointer, because a process that exits without clearing
// its callback must not wait here for a thread that may be waiting for the main loop.
SoundServer* server = nullptr;

// Ecore has no function that tells whether it is initialized, but it numbers its events when
// it is.
bool mainLoopExists() {
    return ECORE_EXE_EVENT_ADD != 0;
}

void deliver(void* route) {
    slotOf<&sound_manager_set_speaker_changed_cb>.deliver(
        static_cast<sound_tv_output_route_e>(reinterpret_cast<std::intptr_t>(route)));
}

void onSink(const pa_sink_info& sink) {
    const std::intptr_t route = routeOf(sink, settings().sound.routes);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the pointer only carries the number
    ecore_main_loop_thread_safe_call_async(&deliver, reinterpret_cast<void*>(route));
}

bool isWanted() {
    return slotOf<&sound_manager_set_speaker_changed_cb>.isSet();
}

void stop() {
    delete server;
    server = nullptr;
}

void startOrStop(void*) {
    if (!isWanted()) {
        stop();
    } else if (server == nullptr) {
        try {
            server = new SoundServer(settings().sound.server, &onSink);
        } catch (const std::exception& error) {
            dlog_print(DLOG_PRIORITY_ERROR, "SOUND", "no speaker events: %s", error.what());
        }
    }
}

}  // namespace

void followSpeakerCallback() noexcept {
    if (!mainLoopExists()) {
        return;
    }
    // At the end of the process the main loop no longer runs.
    if (!isWanted() && eina_main_loop_is()) {
        stop();
    } else {
        ecore_main_loop_thread_safe_call_async(&startOrStop, nullptr);
    }
}

}  // namespace corvane::host
