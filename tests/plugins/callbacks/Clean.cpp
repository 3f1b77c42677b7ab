// A correct plugin whose callback requests a task.
#include "tests/plugins/NameSubscriber.h"

namespace {

int called = 0;

void onName(char*, void*) {
    broker->RequestToInvokeInTaskExecutor([](void*) { ++called; }, nullptr);
}

}  // namespace
