#include "sdk/testkit/src/MainLoop.h"

#include <Ecore.h>

#include <memory>
#include <stdexcept>

namespace corvane::testkit {

MainLoop::MainLoop() {
    if (ecore_init() == 0) {
        throw std::runtime_error("the main loop can't be started");
    }
}

MainLoop::~MainLoop() {
    ecore_shutdown();
}

bool MainLoop::runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    struct TimerRemover {
        void operator()(Ecore_Timer* timer) const { ecore_timer_del(timer); }
    };
    constexpr double period = 0.005;
    const auto deadline = std::chrono::steady_clock::now() + limit;
    // Ends an iteration of the loop even if no other event occurs.
    const auto renew = [](void*) -> Eina_Bool { return ECORE_CALLBACK_RENEW; };
    const std::unique_ptr<Ecore_Timer, TimerRemover> timer(ecore_timer_add(period, renew, nullptr));
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        ecore_main_loop_iterate_may_block(1);
    }
    return true;
}

}  // namespace corvane::testkit
