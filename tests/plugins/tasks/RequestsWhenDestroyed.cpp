// A plugin whose task captures an object with a destructor that requests another task. That does no
// harm if the task runs, but it hangs if the task is dropped.
#include <memory>

#include "tests/plugins/NameSubscriber.h"

namespace {

struct Requester {
    __attribute__((noinline)) ~Requester() {
        broker->RequestToInvokeInTaskExecutor([](void*) {}, nullptr);
    }
};

void onName(char*, void*) {
    broker->RequestToInvokeInTaskExecutor([held = std::make_shared<Requester>()](void*) {},
                                          nullptr);
}

}  // namespace
