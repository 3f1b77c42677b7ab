// Nothing is wrong.
#include "tests/plugins/check/Subscriber.h"

namespace {

int called = 0;

void onName(char*, void*) {
    broker->RequestToInvokeInTaskExecutor([](void*) { ++called; }, nullptr);
}

}  // namespace
