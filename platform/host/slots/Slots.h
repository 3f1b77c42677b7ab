// The slots of all the platform libraries as a list.
#pragma once

#include <span>

namespace corvane::host {

struct SlotState {
    const char* event;
    bool (*isSet)();
};

std::span<const SlotState> slotStates();

}  // namespace corvane::host
