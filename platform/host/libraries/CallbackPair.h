// Defines both C functions of an event; used with the table of events.
#pragma once

#include "platform/host/PlatformApi.h"
#include "platform/host/slots/CallbackSlot.h"

#define CALLBACK_PAIR(setFunction, unsetFunction, ...)                             \
    PLATFORM_API int setFunction(corvane::host::CallbackOf<&setFunction> callback, \
                                 void* userData) {                                 \
        return corvane::host::setCallback<&setFunction>(callback, userData);       \
    }                                                                              \
    PLATFORM_API int unsetFunction() {                                             \
        return corvane::host::unsetCallback<&setFunction>();                       \
    }
