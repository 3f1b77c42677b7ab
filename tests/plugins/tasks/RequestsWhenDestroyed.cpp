// A job holds an object whose destructor requests another job. That does no harm as long as
// the job runs.
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
