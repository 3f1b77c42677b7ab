// The C functions of the TV extension of the platform's Bluetooth.
#include <bluetooth_tv.h>

#include "platform/host/libraries/CallbackPair.h"
#include "platform/host/libraries/Product.h"

PLATFORM_API int bt_product_init() {
    return corvane::host::startProduct();
}
PLATFORM_API int bt_product_deinit() {
    return corvane::host::stopProduct();
}

#define BLUETOOTH(...)
#define BLUETOOTH_TV CALLBACK_PAIR
#define SOUND_MANAGER_TV(...)
#define EVENT(library, name, ...) library(__VA_ARGS__, )
#include "platform/host/events/Events.def"
