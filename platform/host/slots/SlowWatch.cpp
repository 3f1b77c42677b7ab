// The warning about a callback, or a set or unset call, that takes too long.
#include "platform/host/slots/SlowWatch.h"

#include <dlog.h>
#include <unistd.h>

#include "platform/host/settings/Settings.h"

namespace corvane::host {

void reportIfSlow(const char* event, const char* what,
                  std::chrono::steady_clock::duration duration) {
    using std::chrono::milliseconds;
    static const milliseconds limit = settings().callbacks.slow;
    if (limit.count() == 0 || duration <= limit) {
        return;
    }
    dlog_print(DLOG_PRIORITY_WARNING, "SLOW",
               "%s: the %s kept thread %d for %lld ms; the limit is %lld ms", event, what,
               static_cast<int>(gettid()),
               static_cast<long long>(std::chrono::duration_cast<milliseconds>(duration).count()),
               static_cast<long long>(limit.count()));
}

}  // namespace corvane::host
