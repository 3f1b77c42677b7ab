#include "taskExecutor/MainThreadInvoker.h"

namespace MainThreadInvoker {

static std::thread::id g_mainThreadId;

void setMainThreadId(const std::thread::id& id) {
    g_mainThreadId = id;
}

const std::thread::id& getMainThreadId() {
    return g_mainThreadId;
}

}  // namespace MainThreadInvoker
