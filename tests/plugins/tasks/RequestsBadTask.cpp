// A plugin whose PLUGIN_INIT requests a task that throws, or an empty function if EMPTY is true. If
// CATCHES is true, it catches the exception and requests another task; otherwise the exception
// leaves PLUGIN_INIT.
#include <IRequestBroker.h>

#include <functional>
#include <stdexcept>

#include "tests/plugins/Fixture.h"

namespace {

void throws(void*) {
    say("throws");
    throw std::runtime_error("from a task");
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    const std::function<void(void*)> bad = EMPTY ? nullptr : std::function<void(void*)>(&throws);
    try {
        say("request returned %d", broker->RequestToInvokeInTaskExecutor(bad, nullptr));
    } catch (const std::exception& error) {
        say("request threw: %s", error.what());
        if (!CATCHES) {
            throw;
        }
    }
    say("next request returned %d",
        broker->RequestToInvokeInTaskExecutor([](void*) { say("works on"); }, nullptr));
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
