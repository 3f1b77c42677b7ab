// A plugin that leaves a shared profile initialised.
#include "tests/plugins/Fixture.h"

namespace {

void onConnection(bool, const char*, void*) {}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    return broker->BtAvrcpTargetInitialize(&onConnection, nullptr);
}

void PLUGIN_DEINIT() {}
