// The identity of the daemon's main thread, for the daemon and its plugins.
// Set once, on the main thread, before any plugin is loaded; not synchronised.
#pragma once

#include <thread>

namespace MainThreadInvoker {

void setMainThreadId(const std::thread::id& id);

/// The default id, which names no thread, until it has been set.
const std::thread::id& getMainThreadId();

}  // namespace MainThreadInvoker
