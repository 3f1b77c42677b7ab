// A plugin whose task captures an object. Its destructor, which runs after the task, queues more
// tasks than there is room for.
#include <memory>

#include "tests/plugins/Fixture.h"

namespace {

struct Requester {
    ~Requester() {
        for (int i = 0; i < 11; ++i) {
            broker->RequestToInvokeInTaskExecutor([](void*) {}, nullptr);
        }
    }
};

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    auto held = std::make_shared<Requester>();
    return broker->RequestToInvokeInTaskExecutor(
        [](void* taken) {
            auto& owner = *static_cast<std::shared_ptr<Requester>*>(taken);
            broker->RequestToInvokeInTaskExecutor([last = std::move(owner)](void*) {}, nullptr);
        },
        &held);
}

void PLUGIN_DEINIT() {}
