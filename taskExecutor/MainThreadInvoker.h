// The id of the daemon's main thread, for the daemon and its plugins. It is set once, on the main
// thread, before any plugin is loaded; it is not synchronised.
#pragma once

#include <thread>

namespace MainThreadInvoker {

void setMainThreadId(const std::thread::id& id);

/// Returns the default id, which belongs to no thread, until the id is set.
const std::thread::id& getMainThreadId();

}  // namespace MainThreadInvoker
