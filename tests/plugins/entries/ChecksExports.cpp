// A plugin that uses symbols which the daemon exports: a function, and the type information of the
// plugin interface.
#include <IRequestBroker.h>
#include <dlfcn.h>

#include <thread>
#include <typeinfo>

#include "taskExecutor/MainThreadInvoker.h"
#include "tests/plugins/Fixture.h"

namespace {

bool isOfTheDaemon(const void* address) {
    Dl_info found{};
    Dl_info own{};
    return dladdr(address, &found) != 0 && dladdr(fileName, &own) != 0 &&
           found.dli_fbase != own.dli_fbase &&
           std::strstr(found.dli_fname, "corvaned_sandbox") != nullptr;
}

const char* yesOrNo(bool value) {
    return value ? "yes" : "no";
}

}  // namespace

int PLUGIN_INIT(void* handle) {
    keepBroker(handle);
    const bool isMain = MainThreadInvoker::getMainThreadId() == std::this_thread::get_id();
    say("init runs on the main thread: %s", yesOrNo(isMain));
    const auto* const type = &typeid(IRequestBroker);
    say("the interface's type is the daemon's: %s", yesOrNo(isOfTheDaemon(type)));
    say("the broker's type: %s", typeid(*broker).name());
    say("the whole object is the handle: %s", yesOrNo(dynamic_cast<void*>(broker) == handle));
    return 0;
}

void PLUGIN_DEINIT() {
    const bool isMain = MainThreadInvoker::getMainThreadId() == std::this_thread::get_id();
    say("deinit runs on the main thread: %s", yesOrNo(isMain));
}
