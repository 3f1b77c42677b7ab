// A plugin that requests tasks in PLUGIN_INIT, inside a task and on another thread, and requests an
// empty function.
#include <IRequestBroker.h>

#include <functional>
#include <thread>

#include "tests/plugins/Fixture.h"

namespace {

int expected = 0;

void work(void* userData) {
    say(userData == &expected ? "work with its user data" : "work with a stranger's user data");
}

void outerWork(void*) {
    say("outer work begins");
    say("inner request returned %d", broker->RequestToInvokeInTaskExecutor(&work, &expected));
    int result = -1;
    std::thread other(
        [&result] { result = broker->RequestToInvokeInTaskExecutor(&work, &expected); });
    other.join();
    say("another thread's request returned %d", result);
    say("outer work ends");
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    say("request returned %d", broker->RequestToInvokeInTaskExecutor(&work, &expected));
    say("outer request returned %d", broker->RequestToInvokeInTaskExecutor(&outerWork, nullptr));
    try {
        broker->RequestToInvokeInTaskExecutor({}, nullptr);
        say("an empty function was not noticed");
    } catch (const std::bad_function_call& e) {
        say("an empty function: %s", e.what());
    }
    say("next request returned %d", broker->RequestToInvokeInTaskExecutor(&work, &expected));
    return 0;
}
