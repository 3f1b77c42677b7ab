// Nothing is wrong.
#include "tests/plugins/NameSubscriber.h"

namespace {

int called = 0;

void onName(char*, void*) {
    broker->RequestToInvokeInTaskExecutor([](void*) { ++called; }, nullptr);
}

}  // namespace
