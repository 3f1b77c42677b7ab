// The C functions of the platform's Bluetooth. The profiles and the audio stack need no
// set-up here; the sources of events start with the product.
#include <bluetooth.h>

#include "platform/host/libraries/CallbackPair.h"

PLATFORM_API int bt_audio_initialize() {
    return 0;
}
PLATFORM_API int bt_audio_deinitialize() {
    return 0;
}

#define BLUETOOTH CALLBACK_PAIR
#define BLUETOOTH_TV(...)
#define SOUND_MANAGER_TV(...)
#define EVENT(library, name, ...) library(__VA_ARGS__, )
#include "platform/host/events/Events.def"
