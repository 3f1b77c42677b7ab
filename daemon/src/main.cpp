// Starts the daemon, runs the main loop and stops the daemon. It takes no arguments and handles no
// signals: the main loop library ends the loop on SIGTERM and SIGINT.
#include <Ecore.h>

#include <exception>
#include <stdexcept>

#include "daemon/src/CommonDaemon.h"
#include "daemon/src/common/log.h"

int main(int, char**) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    CommonDaemon daemon;
    try {
        if (ecore_init() == 0) {
            throw std::runtime_error("fail to ecore_init()");
        }
        daemon.start();
        ecore_main_loop_begin();
        daemon.terminate();
        ecore_shutdown();
        return 0;
    } catch (const std::exception& e) {
        // Logged under the task library's tag, where existing log filters expect it.
        DAEMON_LOG("QVX_TPL_CONTEXT", DLOG_PRIORITY_ERROR, "exception : %s", e.what());
        return -1;
    }
}
